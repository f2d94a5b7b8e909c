#include "localization/Language.h"

#include <cstdlib>

namespace nxui {

std::string homeDirectory() {
    const char* home = std::getenv("HOME");
    return home ? home : "";
}

std::string currentLanguage(Product product) {
    static const std::array<std::string, 2> codes = [] {
        const std::string system = firstSupportedLanguage(systemLanguages());
        const auto storedOrSystem = [&](Product stored) {
            std::string code = readLanguage(stored, homeDirectory());
            return code.empty() ? system : code;
        };
        return std::array{storedOrSystem(Product::TwoD), storedOrSystem(Product::ThreeD)};
    }();
    return codes[product == Product::ThreeD ? 1 : 0];
}

void persistInitialLanguage(Product product) {
    if (readLanguage(product, homeDirectory()).empty())
        saveLanguage(product, currentLanguage(product), homeDirectory());
}

} // namespace nxui
