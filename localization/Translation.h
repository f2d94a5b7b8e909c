#pragma once

#include "localization/Language.h"

#include <array>
#include <span>
#include <string>

// The words of the program and of the plug-in in every language, compiled in. German is the source
// language: the code holds the German text, and that is what finds the translation.
namespace nxui {

// One text in the order of languageCodes, as NUL-terminated UTF-8. Cell 0, the German text, is the
// key. In the catalogue no cell is empty; elsewhere a null or empty one shows English instead.
using CatalogRow = std::array<const char*, languageCodes.size()>;

// Every row, in strictly ascending order of the keys as strcmp compares them. Constant data made at
// build time from the folder po. Any thread.
extern const std::span<const CatalogRow> catalog;

// `text` in `language`; any language that is not one of languageCodes stands for English. A text
// that has no row comes back as it is, in German. Other rows than the catalogue's, in the order
// described above, are for tests and for the benchmark. Any thread.
std::string translate(const std::string& text, const std::string& language,
                      std::span<const CatalogRow> rows = catalog);

// The row with the key `text`, or null. `compare` orders two NUL-terminated texts as strcmp does;
// it is called at most ceil(log2(rows + 1)) times, ten times for 879 rows, which is what a test
// passes a compare of its own for. Any thread.
template<typename Compare>
const CatalogRow* findRow(const std::string& text, std::span<const CatalogRow> rows,
                          Compare compare) {
    std::size_t first = 0;
    std::size_t count = rows.size();
    while (count > 0) {
        const std::size_t middle = first + count / 2;
        const int order = compare(rows[middle].front(), text.c_str());
        if (order == 0) {
            // A text with a NUL inside compares equal to the key before the NUL, and is not it.
            const bool isWhole = text.find('\0') == std::string::npos;
            return isWhole ? &rows[middle] : nullptr;
        }
        if (order < 0) {
            count -= count / 2 + 1;
            first = middle + 1;
        } else {
            count /= 2;
        }
    }
    return nullptr;
}

} // namespace nxui
