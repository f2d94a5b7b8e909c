#include "localization/Translation.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <deque>
#include <memory>

namespace {

using nxui::CatalogRow;
using nxui::translate;

TEST(Translation, german_needs_no_lookup) {
    EXPECT_EQ(translate("Suchen", "de"), "Suchen");
    const CatalogRow unreadable{}; // its key could not even be compared
    EXPECT_EQ(translate("Suchen", "de", {&unreadable, 1}), "Suchen");
}

TEST(Translation, unknown_language_means_english) {
    EXPECT_EQ(translate("Suchen", "en"), "Search");
    for (const char* language : {"EN", "xx", "", "De", "zh", "zh-hans", "en-US"})
        EXPECT_EQ(translate("Suchen", language), "Search") << language;
}

TEST(Translation, text_without_a_row_is_unchanged_in_every_language) {
    for (const std::string text : {"Norvaxel",        // the application menu
                                   "Reiseart",        // stays German on purpose
                                   "Suchen ",         // a key and a space
                                   "Suche",           // the beginning of a key
                                   "suchen",          // another case
                                   "Orte und Routen", // the end of a key
                                   "\n", " ", "~", "\xF4\x8F\xBF\xBF", "\x80"}) {
        for (const std::string_view language : nxui::languageCodes)
            EXPECT_EQ(translate(text, std::string(language)), text) << language;
        EXPECT_EQ(translate(text, "xx"), text);
    }
}

TEST(Translation, text_with_a_nul_is_not_the_key_before_it) {
    const std::string text("Suchen\0", 7);
    EXPECT_EQ(translate(text, "en"), text);
}

TEST(Translation, empty_text_is_empty_in_every_language) {
    for (const std::string_view language : nxui::languageCodes)
        EXPECT_EQ(translate("", std::string(language)), "");
    EXPECT_EQ(translate("", ""), "");
}

TEST(Translation, texts_come_in_the_language_asked_for) {
    struct {
        const char* text;
        const char* language;
        const char* translation;
    } const rows[] = {
        {"OK", "tr", "Tamam"},
        {"OK", "en", "OK"},
        {"1,2 km", "en", "1.2 km"},
        {"1,2 km", "fr", "1,2 km"},
        {"Stationen · %lu / 32", "en", "Stops · %lu / 32"},
        {" · ", "en", " · "},
        {"Überall", "en", "Überall"},
        {"Zoomen", "en", "Zoom"},
        {"Photon · OpenStreetMap-Daten (ODbL) · Terrain Tiles (AWS)\nEinmal laden, danach offline "
         "in "
         "Norvaxel 3D nutzen. Der Umkreis begrenzt den Ausschnitt.",
         "en",
         "Photon · OpenStreetMap data (ODbL) · Terrain Tiles (AWS)\nDownload once, then use "
         "offline "
         "in Norvaxel 3D. The radius limits the area."},
    };
    for (const auto& row : rows)
        EXPECT_EQ(translate(row.text, row.language), row.translation);
}

TEST(Translation, name_of_the_support_folder_is_the_same_in_every_language) {
    const std::string name = "Norvaxel 3D";
    const CatalogRow* row = nxui::findRow(name, nxui::catalog, std::strcmp);
    ASSERT_TRUE(row);
    for (const char* cell : *row)
        EXPECT_EQ(std::string(cell ? cell : "(null)"), name);
}

TEST(Translation, cell_that_is_not_written_shows_english_or_else_german) {
    CatalogRow row{};
    row[0] = "Hallo";
    EXPECT_EQ(translate("Hallo", "ja", {&row, 1}), "Hallo");
    row[1] = "";
    EXPECT_EQ(translate("Hallo", "en", {&row, 1}), "Hallo");
    EXPECT_EQ(translate("Hallo", "ja", {&row, 1}), "Hallo");
    row[1] = "Hello";
    EXPECT_EQ(translate("Hallo", "ja", {&row, 1}), "Hello");
    row[10] = "";
    EXPECT_EQ(translate("Hallo", "ja", {&row, 1}), "Hello");
    row[10] = "こんにちは";
    EXPECT_EQ(translate("Hallo", "ja", {&row, 1}), "こんにちは");
}

TEST(Translation, columns_are_in_the_order_of_the_codes) {
    CatalogRow row = {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9", "10", "11", "12", "13"};
    row[0] = "key";
    for (std::size_t column = 1; column < row.size(); ++column)
        EXPECT_EQ(translate("key", std::string(nxui::languageCodes[column]), {&row, 1}),
                  std::to_string(column));
}

TEST(Catalog, keys_ascend_strictly_and_every_cell_is_written) {
    const char* before = "";
    for (const CatalogRow& row : nxui::catalog) {
        EXPECT_LT(std::strcmp(before, row[0]), 0) << row[0];
        for (const char* cell : row)
            EXPECT_TRUE(cell && *cell) << row[0];
        before = row[0];
    }
    EXPECT_EQ(nxui::catalog.front()[0][0], '\n');
    EXPECT_EQ(std::string(nxui::catalog.back()[0]).substr(0, 2), "Ü");
}

// strcmp, which counts how often it is asked.
class CountingCompare {
public:
    int operator()(const char* left, const char* right) const {
        ++*count;
        return std::strcmp(left, right);
    }
    std::shared_ptr<int> count = std::make_shared<int>(0);
};

TEST(Catalog, lookup_takes_at_most_ten_comparisons) {
    for (const CatalogRow& row : nxui::catalog) {
        const std::string key = row[0];
        const CountingCompare compare;
        EXPECT_EQ(nxui::findRow(key, nxui::catalog, compare), &row);
        EXPECT_LE(*compare.count, 10) << key;
        EXPECT_GE(*compare.count, 1) << key;
    }
}

// Rows as many as asked for, with keys that begin alike, hold signs beyond ASCII and are in order.
class ManyRows {
public:
    explicit ManyRows(int count) {
        for (int number = 0; number < count; ++number) {
            std::array<char, 64> key;
            std::snprintf(key.data(), key.size(), "%s %04d",
                          number < count / 2 ? "Straße" : "Übersicht", number);
            CatalogRow row{};
            row[0] = texts.emplace_back(key.data()).c_str();
            row[1] = texts.emplace_back("en " + std::to_string(number)).c_str();
            rows.push_back(row);
        }
    }
    std::vector<CatalogRow> rows;

private:
    std::deque<std::string> texts; // whose elements stay where they are
};

TEST(FindRow, takes_at_most_ten_comparisons_in_879_rows) {
    const ManyRows many(879);
    const CountingCompare compare;
    for (const CatalogRow& row : many.rows) {
        const std::string key = row[0];
        *compare.count = 0;
        EXPECT_EQ(nxui::findRow(key, many.rows, compare), &row);
        EXPECT_LE(*compare.count, 10) << key;
        for (const std::string& other : {key + "!", key.substr(0, key.size() - 1), "!" + key}) {
            *compare.count = 0;
            EXPECT_EQ(nxui::findRow(other, many.rows, compare), nullptr) << other;
            EXPECT_LE(*compare.count, 10) << other;
        }
    }
}

TEST(FindRow, finds_every_row_of_a_table_of_any_size) {
    EXPECT_EQ(nxui::findRow("x", {}, std::strcmp), nullptr);
    for (int count = 1; count <= 40; ++count) {
        const ManyRows many(count);
        for (const CatalogRow& row : many.rows)
            EXPECT_EQ(nxui::findRow(row[0], many.rows, std::strcmp), &row) << count;
        EXPECT_EQ(nxui::findRow("A", many.rows, std::strcmp), nullptr) << "before the first";
        EXPECT_EQ(nxui::findRow("\xFF", many.rows, std::strcmp), nullptr) << "after the last";
    }
}

} // namespace
