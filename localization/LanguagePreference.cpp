#include "localization/Language.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>

namespace nxui {
namespace {

// A valid file holds less, however long a tag it was meant to hold.
constexpr std::size_t refusedSize = 67;

// Writes beside the target first, so that a reader and a full disk find the old file or the new
// one, never a part. Nothing between the creation and the end can throw and leave the file behind.
bool replaceFile(const std::filesystem::path& target, const std::string& content) {
    std::string temporary = target.string() + ".tmp.XXXXXX";
    const int descriptor = mkostemp(temporary.data(), O_CLOEXEC); // for the owner only
    if (descriptor < 0)
        return false;
    const auto size = ssize_t(content.size());
    const bool isStored =
        write(descriptor, content.data(), content.size()) == size && fsync(descriptor) == 0;
    close(descriptor);
    if (isStored && rename(temporary.c_str(), target.c_str()) == 0)
        return true;
    unlink(temporary.c_str());
    return false;
}

// The file's bytes when it is one to be trusted, else nothing. The questions are asked of the
// opened file, so that it cannot be exchanged for a link between the question and the reading; not
// waiting matters for a pipe in the file's place.
std::string contentOfSmallRegularFile(const std::filesystem::path& path) {
    const int descriptor =
        open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        return {};
    std::array<char, refusedSize> bytes;
    struct stat status;
    ssize_t count = 0;
    if (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
        status.st_size < static_cast<off_t>(refusedSize))
        count = read(descriptor, bytes.data(), bytes.size());
    close(descriptor);
    return {bytes.data(), count > 0 ? std::size_t(count) : 0};
}

} // namespace

std::filesystem::path preferencePath(Product product, const std::string& home) {
    return std::filesystem::path(home) / "Library/Application Support/Norvaxel/Preferences" /
           (product == Product::ThreeD ? "3d-language.txt" : "2d-language.txt");
}

std::string readLanguage(Product product, const std::string& home) {
    if (home.empty())
        return {};
    try {
        std::string line = contentOfSmallRegularFile(preferencePath(product, home));
        line.resize(std::min(line.find('\n'), line.size()));
        return normalizeLanguage(line) == line ? line : std::string();
    } catch (const std::exception&) {
        return {};
    }
}

bool saveLanguage(Product product, const std::string& code, const std::string& home) {
    if (home.empty() || code.empty() || normalizeLanguage(code) != code)
        return false;
    try {
        const std::filesystem::path path = preferencePath(product, home);
        std::filesystem::create_directories(path.parent_path());
        if (std::filesystem::is_symlink(std::filesystem::symlink_status(path)))
            return false;
        return replaceFile(path, code + '\n');
    } catch (const std::exception&) {
        return false;
    }
}

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
