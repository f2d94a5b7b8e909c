#include "localization/Language.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>

namespace {

using nxui::Product;

TEST(Language, products_have_the_numbers_that_the_plugin_uses) {
    EXPECT_EQ(int(Product::TwoD), 0);
    EXPECT_EQ(int(Product::ThreeD), 1);
}

TEST(Language, tags_become_codes) {
    struct {
        const char* tag;
        const char* code;
    } const rows[] = {
        {"en-US", "en"},
        {"pt_BR", "pt"},
        {"DE", "de"},
        {"de_DE.UTF-8", "de"},
        {"fr@euro", "fr"},
        {"ca@valencia.fr", ""},
        {"ar_EG.UTF-8@latn", "ar"},
        {"hi", "hi"},
        {"en-", "en"},
        {"en--US", "en"},
        // Chinese, by script or region
        {"zh", "zh-Hans"},
        {"zh-", "zh-Hans"},
        {"zh.GB18030", "zh-Hans"},
        {"zh_CN", "zh-Hans"},
        {"zh-Hans", "zh-Hans"},
        {"zh-hans", "zh-Hans"},
        {"zh-Hans-CN", "zh-Hans"},
        {"zh-SG", "zh-Hans"},
        {"zh_CN.UTF-8", "zh-Hans"},
        {"zh-Hant", ""},
        {"zh-TW", ""},
        {"zh-HK", ""},
        {"zh-MO", ""},
        {"zh-Hant-HK", ""},
        {"zh-Hant-CN", ""},
        {"zh-Hans-HK", ""},
        {"zh-Hans-MO", ""},
        {"zh-Hans-TW", ""},
        {"zh-Hans-Hant", ""},
        {"zh_TW.UTF-8", ""},
        {"zh-Latn", ""},
        {"zh--", ""},
        {"zh--CN", "zh-Hans"},
        {"zhh", ""},
        // no language of the program
        {"nb-NO", ""},
        {"C", ""},
        {"C.UTF-8", ""},
        {"POSIX", ""},
        {"", ""},
        {"-en", ""},
        {".en", ""},
        {"@en", ""},
        {"e", ""},
        {"eng", ""},
        {"english", ""},
        // no tag at all
        {"en US", ""},
        {" en", ""},
        {"en ", ""},
        {"en\n", ""},
        {"en\r", ""},
        {"en.UTF 8", ""},
        {"en/US", ""},
        {"en\xC3\xBC", ""},
        {"en\x80", ""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(nxui::normalizeLanguage(row.tag), row.code) << '"' << row.tag << '"';
    EXPECT_EQ(nxui::normalizeLanguage(std::string("en\0", 3)), "") << "with a NUL";
}

TEST(Language, tag_of_64_bytes_is_read_and_one_of_65_is_not) {
    const std::string longest = "en-" + std::string(61, 'x');
    EXPECT_EQ(nxui::normalizeLanguage(longest), "en");
    EXPECT_EQ(nxui::normalizeLanguage(longest + "x"), "");
}

TEST(Language, every_code_stands_for_itself) {
    for (const std::string_view code : nxui::languageCodes)
        EXPECT_EQ(nxui::normalizeLanguage(std::string(code)), code);
}

TEST(Language, first_supported_tag_is_the_system_language) {
    EXPECT_EQ(nxui::firstSupportedLanguage({"zh-Hant-TW", "fr-FR"}), "fr");
    EXPECT_EQ(nxui::firstSupportedLanguage({"xx"}), "en");
    EXPECT_EQ(nxui::firstSupportedLanguage({}), "en");
    EXPECT_EQ(nxui::firstSupportedLanguage({"", "ja_JP.UTF-8", "de"}), "ja");
}

TEST(Language, index_counts_the_codes_from_one) {
    for (int index = 1; index <= 14; ++index)
        EXPECT_EQ(nxui::languageForIndex(index), nxui::languageCodes[std::size_t(index - 1)]);
    EXPECT_EQ(nxui::languageForIndex(1), "de");
    EXPECT_EQ(nxui::languageForIndex(10), "zh-Hans");
    EXPECT_EQ(nxui::languageForIndex(14), "hi");
}

// The plug-in reads and shows the same languages in the same order.
TEST(Language, codes_are_in_the_order_of_the_plugin) {
    EXPECT_EQ(nxui::languageCodes,
              (std::array<std::string_view, 14>{"de", "en", "ru", "es", "fr", "pt", "it", "pl",
                                                "tr", "zh-Hans", "ja", "ko", "ar", "hi"}));
}

TEST(Language, only_arabic_is_written_from_right_to_left) {
    for (const std::string_view code : nxui::languageCodes)
        EXPECT_EQ(nxui::isRightToLeft(code), code == "ar") << code;
    EXPECT_FALSE(nxui::isRightToLeft(""));
}

TEST(Language, preference_path_is_below_the_home_directory) {
    const std::string folder = "/home/a/Library/Application Support/Norvaxel/Preferences/";
    EXPECT_EQ(nxui::preferencePath(Product::ThreeD, "/home/a"), folder + "3d-language.txt");
    EXPECT_EQ(nxui::preferencePath(Product::ThreeD, "/home/a/"), folder + "3d-language.txt");
    EXPECT_EQ(nxui::preferencePath(Product::TwoD, "/home/a"), folder + "2d-language.txt");
    EXPECT_EQ(nxui::preferencePath(static_cast<Product>(7), "/home/a"), folder + "2d-language.txt");
}

#ifndef __APPLE__ // where the list comes from the environment

using Values = std::map<std::string, std::string>;

// The variables that speak of the language hold exactly these values; afterwards none is set.
class Environment {
public:
    explicit Environment(const Values& values) {
        clear();
        for (const auto& [name, value] : values)
            setenv(name.c_str(), value.c_str(), 1);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment() { clear(); }

private:
    static void clear() {
        for (const char* name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"})
            unsetenv(name);
    }
};

TEST(SystemLanguages, environment_names_them_in_order) {
    struct {
        Values environment;
        std::vector<std::string> tags;
    } const rows[] = {
        {{}, {}},
        {{{"LANG", "de_DE.UTF-8"}}, {"de_DE.UTF-8"}},
        {{{"LANGUAGE", "zh-Hant-TW:fr-FR"}}, {"zh-Hant-TW", "fr-FR"}},
        {{{"LANGUAGE", ":pl::it:"}, {"LANG", "C"}}, {"pl", "it", "C"}},
        {{{"LANGUAGE", ""}, {"LC_ALL", ""}, {"LC_MESSAGES", "ko"}, {"LANG", "ja"}}, {"ko"}},
        {{{"LC_ALL", "ru"}, {"LC_MESSAGES", "ko"}, {"LANG", "ja"}}, {"ru"}},
        {{{"LANGUAGE", "xx"}, {"LANG", "ja"}}, {"xx", "ja"}},
    };
    for (const auto& row : rows) {
        const Environment environment(row.environment);
        EXPECT_EQ(nxui::systemLanguages(), row.tags);
    }
}

TEST(SystemLanguages, index_outside_the_codes_asks_the_system_afresh) {
    for (const int index : {0, 15, -1, -2147483647 - 1, 2147483647}) {
        {
            const Environment environment(Values{{"LANGUAGE", "zh-Hant-TW:fr-FR"}});
            EXPECT_EQ(nxui::languageForIndex(index), "fr") << index;
        }
        {
            const Environment environment(Values{{"LANG", "xx"}});
            EXPECT_EQ(nxui::languageForIndex(index), "en") << index;
        }
    }
}

#endif

} // namespace
