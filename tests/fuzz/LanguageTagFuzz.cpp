// Names of languages as the environment spells them: LANGUAGE, LC_ALL, LC_MESSAGES and LANG.

#include "localization/Language.h"
#include "tests/fuzz/Input.h"

#include <array>
#include <cstring>
#include <string>
#include <vector>

namespace {

using fuzz::require;

// What comes before the first of these letters.
std::string before(const char* letters, const std::string& text) {
    const std::size_t end = text.find_first_of(letters);
    return end == std::string::npos ? text : text.substr(0, end);
}

// The rule, a sentence after the other.
std::string naivelyNormalized(const std::string& tag) {
    static const std::string upper = "ABCDEFGHIJKLMNOPQRSTUVWXYZ_";
    static const std::string lower = "abcdefghijklmnopqrstuvwxyz-";
    if (tag.empty() || tag.size() > 64)
        return "";
    std::string name;
    for (const char letter : tag) {
        const std::size_t found = letter != 0 ? upper.find(letter) : std::string::npos;
        name += found == std::string::npos ? letter : lower[found];
    }
    if (name.find_first_not_of(lower + "0123456789.@") != std::string::npos)
        return "";
    name = before("@", before(".", name));
    const std::string language = before("-", name);
    if (language != "zh") {
        for (const char* code :
             {"de", "en", "ru", "es", "fr", "pt", "it", "pl", "tr", "ja", "ko", "ar", "hi"})
            if (language == code)
                return code;
        return "";
    }
    const std::string parts = name + "-";
    for (const char* traditional : {"-hant-", "-tw-", "-hk-", "-mo-"})
        if (parts.find(traditional) != std::string::npos)
            return "";
    if (name == "zh" || name == "zh-")
        return "zh-Hans";
    for (const char* simplified : {"-hans-", "-cn-", "-sg-"})
        if (parts.find(simplified) != std::string::npos)
            return "zh-Hans";
    return "";
}

std::string naivelyChosen(const std::vector<std::string>& tags) {
    for (const std::string& tag : tags)
        if (const std::string code = naivelyNormalized(tag); !code.empty())
            return code;
    return "en";
}

void checkTag(const std::string& tag) {
    const std::string code = nxui::normalizeLanguage(tag);
    require(code == naivelyNormalized(tag), "a tag stands for the language that it names");
    require(code.empty() || nxui::normalizeLanguage(code) == code, "a code stands for itself");
    require(nxui::isRightToLeft(code) == (code == "ar"), "Arabic alone is read from the right");
}

#ifndef __APPLE__ // where the list comes from the environment

// A variable that is changed in its place: setenv would keep every value for ever.
class Variable {
public:
    explicit Variable(const char* name) : begin_(std::strlen(name) + 1) {
        std::snprintf(content_.data(), content_.size(), "%s=", name);
        putenv(content_.data());
    }
    // Returns what it holds now: a value ends at its first NUL.
    std::string set(const QByteArray& value) {
        char* const begin = content_.data() + begin_;
        std::snprintf(begin, content_.size() - begin_, "%s", value.constData());
        return begin;
    }

private:
    std::array<char, 2048> content_{}; // outlives the end of the program's own objects
    std::size_t begin_;
};

void checkEnvironment(const QList<QByteArray>& fields) {
    static Variable language("LANGUAGE");
    static Variable locales[] = {Variable("LC_ALL"), Variable("LC_MESSAGES"), Variable("LANG")};
    std::vector<std::string> tags;
    std::string wanted = language.set(fields[0]) + ':';
    for (std::size_t end; (end = wanted.find(':')) != std::string::npos; wanted.erase(0, end + 1))
        tags.push_back(wanted.substr(0, end));
    std::string locale;
    for (int position = 0; position < 3; ++position) {
        const std::string value = locales[position].set(fields[position + 1]);
        if (locale.empty())
            locale = value;
    }
    tags.push_back(locale);
    require(nxui::languageForIndex(0) == naivelyChosen(tags),
            "the first wish that can be met is met");
    std::erase(tags, "");
    require(nxui::systemLanguages() == tags, "each wish is named, in the order of the system");
}

#else

void checkEnvironment(const QList<QByteArray>&) {}

#endif

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QList<QByteArray> fields = fuzz::fields(data, size, 4);
    std::vector<std::string> tags;
    for (const QByteArray& field : fields) {
        tags.push_back(field.toStdString());
        checkTag(tags.back());
    }
    require(nxui::firstSupportedLanguage(tags) == naivelyChosen(tags),
            "the first tag that stands for a language is chosen");
    checkEnvironment(fields);
    return 0;
}
