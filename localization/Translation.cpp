#include "localization/Translation.h"

#include <algorithm>
#include <cstring>

namespace nxui {
namespace {

constexpr std::size_t german = 0;
constexpr std::size_t english = 1;

std::size_t columnOf(const std::string& language) {
    const auto code = std::ranges::find(languageCodes, language);
    return code != languageCodes.end() ? std::size_t(code - languageCodes.begin()) : english;
}

bool isWritten(const char* cell) {
    return cell && *cell;
}

} // namespace

std::string translate(const std::string& text, const std::string& language,
                      std::span<const CatalogRow> rows) {
    if (text.empty() || language == languageCodes[german])
        return text;
    const CatalogRow* row = findRow(text, rows, std::strcmp);
    if (!row)
        return text;
    const char* cell = (*row)[columnOf(language)];
    if (!isWritten(cell))
        cell = (*row)[english];
    return isWritten(cell) ? std::string(cell) : text;
}

} // namespace nxui
