#include "localization/Language.h"

#ifdef __APPLE__

#include <CoreFoundation/CoreFoundation.h>

#include <array>
#include <memory>

namespace nxui {

std::vector<std::string> systemLanguages() {
    struct Release {
        void operator()(CFArrayRef list) const { CFRelease(list); }
    };
    const std::unique_ptr<const __CFArray, Release> languages(CFLocaleCopyPreferredLanguages());
    if (!languages)
        return {};
    std::vector<std::string> tags;
    const CFIndex count = CFArrayGetCount(languages.get());
    for (CFIndex position = 0; position < count; ++position) {
        const CFTypeRef element = CFArrayGetValueAtIndex(languages.get(), position);
        if (!element || CFGetTypeID(element) != CFStringGetTypeID())
            continue;
        std::array<char, 256> text;
        if (CFStringGetCString(static_cast<CFStringRef>(element), text.data(),
                               static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8))
            tags.emplace_back(text.data());
    }
    return tags;
}

} // namespace nxui

#else

#include <algorithm>
#include <cstdlib>

namespace nxui {
namespace {

std::string_view environmentValue(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

} // namespace

// LANGUAGE is the user's ordered list. The locale stands behind it as the last wish, found in the
// order in which the C library looks for the language of messages.
std::vector<std::string> systemLanguages() {
    std::vector<std::string> tags;
    const std::string_view list = environmentValue("LANGUAGE");
    for (std::size_t start = 0; start < list.size();) {
        const std::size_t end = std::min(list.find(':', start), list.size());
        if (end > start)
            tags.emplace_back(list.substr(start, end - start));
        start = end + 1;
    }
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const std::string_view locale = environmentValue(name);
        if (!locale.empty()) {
            tags.emplace_back(locale);
            break;
        }
    }
    return tags;
}

} // namespace nxui

#endif
