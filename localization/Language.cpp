#include "localization/Language.h"

#ifdef __APPLE__
#include <CoreFoundation/CoreFoundation.h>
#endif

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <sstream>

namespace nxui {
namespace {

constexpr std::size_t longestTag = 64;

// Spelled out, because the character functions of the C library depend on the locale.
bool isTagByte(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') || byte == '-' ||
           byte == '.' || byte == '@';
}

char lowerCased(char byte) {
    return byte >= 'A' && byte <= 'Z' ? char(byte - 'A' + 'a') : byte;
}

// "zh" alone means the simplified script, and so does a script or region that writes it. Readers of
// the traditional script are better served by their next language.
std::string normalizeChinese(std::string_view tag) {
    std::size_t subtags = 0;
    bool isSimplified = false;
    for (std::size_t start = 0; start < tag.size();) {
        const std::size_t end = std::min(tag.find('-', start), tag.size());
        const std::string_view subtag = tag.substr(start, end - start);
        if (subtag == "hant" || subtag == "tw" || subtag == "hk" || subtag == "mo")
            return {};
        if (subtag == "hans" || subtag == "cn" || subtag == "sg")
            isSimplified = true;
        ++subtags;
        start = end + 1;
    }
    return isSimplified || subtags == 1 ? "zh-Hans" : "";
}

} // namespace

bool isRightToLeft(std::string_view code) {
    const auto language = std::ranges::find(languages, code, &Language::code);
    return language != languages.end() && language->direction == "rtl";
}

std::string normalizeLanguage(std::string tag) {
    if (tag.empty() || tag.size() > longestTag)
        return {};
    for (char& byte : tag) {
        byte = byte == '_' ? '-' : lowerCased(byte);
        if (!isTagByte(byte))
            return {};
    }
    const std::string_view name = std::string_view(tag).substr(0, tag.find_first_of(".@"));
    const std::string_view primary = name.substr(0, name.find('-'));
    if (primary == "zh")
        return normalizeChinese(name);
    const auto code = std::ranges::find(languageCodes, primary);
    return code != languageCodes.end() ? std::string(*code) : std::string();
}

#ifdef __APPLE__

std::vector<std::string> systemLanguages() {
    struct Release {
        void operator()(CFArrayRef list) const { CFRelease(list); }
    };
    const std::unique_ptr<const __CFArray, Release> preferred(CFLocaleCopyPreferredLanguages());
    if (!preferred)
        return {};
    std::vector<std::string> tags;
    const CFIndex count = CFArrayGetCount(preferred.get());
    for (CFIndex position = 0; position < count; ++position) {
        const CFTypeRef element = CFArrayGetValueAtIndex(preferred.get(), position);
        if (!element || CFGetTypeID(element) != CFStringGetTypeID())
            continue;
        std::array<char, 256> text;
        if (CFStringGetCString(static_cast<CFStringRef>(element), text.data(),
                               static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8))
            tags.emplace_back(text.data());
    }
    return tags;
}

#else

// LANGUAGE is the user's ordered list. The locale stands behind it as the last wish, found in the
// order in which the C library looks for the language of messages.
std::vector<std::string> systemLanguages() {
    std::vector<std::string> tags;
    const auto value = [](const char* name) {
        const char* found = std::getenv(name);
        return std::string_view(found ? found : "");
    };
    std::istringstream wanted{std::string(value("LANGUAGE"))};
    for (std::string tag; std::getline(wanted, tag, ':');)
        if (!tag.empty())
            tags.push_back(tag);
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const std::string_view locale = value(name);
        if (!locale.empty()) {
            tags.emplace_back(locale);
            break;
        }
    }
    return tags;
}

#endif

std::string firstSupportedLanguage(const std::vector<std::string>& tags) {
    for (const std::string& tag : tags) {
        std::string code = normalizeLanguage(tag);
        if (!code.empty())
            return code;
    }
    return "en";
}

std::string languageForIndex(int index) {
    if (index >= 1 && index <= int(languageCodes.size()))
        return std::string(languageCodes[std::size_t(index - 1)]);
    return firstSupportedLanguage(systemLanguages());
}

} // namespace nxui
