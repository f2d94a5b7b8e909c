// A language and a text to look up, in the catalogue itself and in rows that the bytes bring along.

#include "localization/NXLocal.h"
#include "localization/Translation.h"
#include "tests/fuzz/Input.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <string>
#include <vector>

namespace {

using fuzz::require;
using nxui::CatalogRow;

// Rows with their keys as texts, which are compared a hundred times faster.
struct Keyed {
    explicit Keyed(std::span<const CatalogRow> given) : rows(given) {
        for (const CatalogRow& row : rows)
            keys.emplace_back(row[0]);
    }
    std::span<const CatalogRow> rows;
    std::vector<std::string> keys;
};

// Every row after the other.
std::string naivelyTranslated(const std::string& text, const std::string& language,
                              const Keyed& rows) {
    if (language == "de")
        return text;
    std::size_t column = 1;
    for (std::size_t each = 0; each < nxui::languages.size(); ++each)
        if (nxui::languages[each].code == language)
            column = each;
    for (std::size_t row = 0; row < rows.keys.size(); ++row) {
        if (rows.keys[row] != text || text.empty())
            continue;
        for (const char* cell : {rows.rows[row][column], rows.rows[row][1]})
            if (cell != nullptr && *cell != '\0')
                return cell;
    }
    return text;
}

// A table as the bytes spell it: a row on each line, a cell behind each tab. A cell that is missing
// is null.
class Rows {
public:
    explicit Rows(const QByteArray& spelled) {
        for (const QByteArray& line : spelled.split('\n')) {
            const QList<QByteArray> cells = line.split('\t');
            CatalogRow row{};
            for (std::size_t cell = 0; cell < row.size() && qsizetype(cell) < cells.size(); ++cell)
                row[cell] = texts_.emplace_back(cells[qsizetype(cell)]).c_str();
            rows_.push_back(row);
        }
        const auto key = [](const CatalogRow& row) { return std::string_view(row[0]); };
        std::ranges::sort(rows_, {}, key);
        const auto repeated = std::ranges::unique(rows_, {}, key);
        rows_.erase(repeated.begin(), repeated.end());
    }
    std::span<const CatalogRow> all() const { return rows_; }

private:
    std::deque<std::string> texts_; // whose elements stay where they are
    std::vector<CatalogRow> rows_;
};

// How often a look-up may compare: until one row at most is left.
int mostComparisons(std::size_t rows) {
    int most = 0;
    for (std::size_t left = rows + 1; left > 1; left = (left + 1) / 2)
        ++most;
    return most;
}

void check(const std::string& text, const std::string& language, const Keyed& keyed) {
    const std::span<const CatalogRow> rows = keyed.rows;
    require(nxui::translate(text, language, rows) == naivelyTranslated(text, language, keyed),
            "the cell of the text's own row, or the text");
    int comparisons = 0;
    const CatalogRow* row = nxui::findRow(text, rows, [&](const char* left, const char* right) {
        ++comparisons;
        return std::strcmp(left, right);
    });
    require(comparisons <= mostComparisons(rows.size()), "a look-up compares a few times only");
    require(row == nullptr || row->front() == text, "the row of a text begins with it");

    const QString wide = fuzz::text(QByteArray::fromStdString(text));
    const QString shown = localization::localText(wide, language, rows);
    QByteArray cell =
        QByteArray::fromStdString(nxui::translate(wide.toUtf8().toStdString(), language, rows));
    // The toolkit drops a byte order mark, which nobody could see anyway.
    if (cell.startsWith("\xef\xbb\xbf"))
        cell.remove(0, 3);
    if (!wide.isValidUtf16())
        require(shown.isEmpty(), "half a letter shows nothing");
    else if (cell.isValidUtf8())
        require(shown.toUtf8() == cell, "what is shown is the translation");
    else
        require(shown == wide, "what cannot be shown leaves the German text");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QList<QByteArray> fields = fuzz::fields(data, size, 3);
    const std::string language = fields[0].toStdString();
    const std::string text = fields[1].toStdString();
    static const Keyed catalogue(nxui::catalog);
    check(text, language, catalogue);
    const Rows rows(fields[2]);
    check(text, language, Keyed(rows.all()));
    return 0;
}
