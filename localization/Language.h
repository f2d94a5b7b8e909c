#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

// The interface language, kept per plug-in variant in one small file that this program and the
// plug-in both read. Only the standard library is used here, so that the plug-in can link it.
//
// A language is always one of languageCodes or the empty string, which means none. Failures are
// reported by that empty string or by false; nothing here throws but for a lack of memory.
namespace nxui {

// Any value other than ThreeD counts as the 2D plug-in.
enum class Product { TwoD = 0, ThreeD = 1 };

// One line of languages.inc, which says what each text is.
struct Language {
    std::string_view code;
    std::string_view ownName; // UTF-8
    std::string_view direction;
    std::string_view locale;
    std::string_view letters;
};

// The order is also that of the catalogue's columns and of the items in the language dialog.
inline constexpr std::array<Language, 14> languages{{
#include "localization/languages.inc"
}};
static_assert(!languages.back().code.empty(), "languages.inc has a line too few");

inline constexpr std::array<std::string_view, 14> languageCodes = [] {
    std::array<std::string_view, 14> codes;
    for (std::size_t position = 0; position < codes.size(); ++position)
        codes[position] = languages[position].code;
    return codes;
}();

// Whether the language of this code is written from right to left. Any thread.
bool isRightToLeft(std::string_view code);

// The value of HOME now, empty when it is unset. Callers ask at the moment of use. Any thread, as
// for all that reads the environment: nobody in the program changes it.
std::string homeDirectory();

// Where the product's language is kept below `home`. The same on every system, because the plug-in
// looks there. Nothing on disk is touched. Any thread.
std::filesystem::path preferencePath(Product product, const std::string& home);

// The code that a BCP 47 tag or a POSIX locale name stands for, or the empty string. Region and
// encoding are dropped; Traditional Chinese is not supported and gives the empty string. Any
// thread.
std::string normalizeLanguage(std::string tag);

// The tags that the user prefers, in the system's order, as the system writes them. Any thread.
std::vector<std::string> systemLanguages();

// The code of the first tag that stands for one, "en" when none does. Any thread.
std::string firstSupportedLanguage(const std::vector<std::string>& tags);

// The stored code: what the file's first line holds. The empty string when that is not exactly a
// code (nothing is trimmed or repaired), when the file is missing, unreadable, a link, anything
// else than a regular file, or of 67 bytes or more, and when `home` is empty. Any thread.
std::string readLanguage(Product product, const std::string& home);

// Replaces the product's file by one that holds `code`, as a whole or not at all, readable by its
// owner only. True when that was done. A code that is not in its final form is refused, and a link
// in the file's place is never replaced or written through. Any thread.
bool saveLanguage(Product product, const std::string& code, const std::string& home);

// The product's language for this run of the program: read from its file, else from the system, on
// the first call from any thread, and unchanged from then on, also after a save. Never empty.
std::string currentLanguage(Product product);

// Writes currentLanguage() to the product's file when that holds no valid language yet. A failed
// save is ignored: the next start tries again. Any thread.
void persistInitialLanguage(Product product);

// The code at position 1 to 14 of languageCodes. Any other index means "automatic" and gives the
// system's language as it is now. Never empty. Any thread.
std::string languageForIndex(int index);

} // namespace nxui
