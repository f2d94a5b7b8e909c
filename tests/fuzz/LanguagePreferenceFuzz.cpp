// What lies in the place of a preference file, a code to save there, and the bytes of the file.

#include "TemporaryFolder.h"
#include "localization/Language.h"
#include "tests/fuzz/Input.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <string>

namespace {

using fuzz::require;
using nxui::Product;

// Everything of this program lies in one folder, in memory where the system has such folders.
const TemporaryFolder& home() {
    static const TemporaryFolder folder = [] {
        if (std::filesystem::is_directory("/dev/shm"))
            ::setenv("TMPDIR", "/dev/shm", 1);
        return TemporaryFolder();
    }();
    return folder;
}

// The folder of the preference files, as the plug-in knows it.
const std::string& folder() {
    static const std::string path = [] {
        const auto made = home().path() / "Library/Application Support/Norvaxel/Preferences";
        std::filesystem::create_directories(made);
        return made.string();
    }();
    return path;
}

std::string fileOf(Product product) {
    return folder() + (product == Product::ThreeD ? "/3d-language.txt" : "/2d-language.txt");
}

void put(const std::string& path, const std::string& content) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    require(::write(file, content.data(), content.size()) == ssize_t(content.size()),
            "a file can be written");
    ::close(file);
}

// What lies at a path: the first letter of its kind, then the bytes of a file or where a link
// leads.
std::string whatLiesAt(const std::string& path) {
    struct stat status{};
    if (::lstat(path.c_str(), &status) != 0)
        return "nothing";
    std::array<char, 2048> bytes;
    if (S_ISLNK(status.st_mode)) {
        const ssize_t size = ::readlink(path.c_str(), bytes.data(), bytes.size());
        return "l" + std::string(bytes.data(), std::size_t(size));
    }
    if (!S_ISREG(status.st_mode))
        return S_ISDIR(status.st_mode) ? "directory" : "pipe";
    const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    const ssize_t size = ::read(file, bytes.data(), bytes.size());
    ::close(file);
    return "f" + std::string(bytes.data(), std::size_t(size));
}

// A name that leads out of the folder is not linked to: a fault must not write elsewhere.
std::string harmless(std::string name) {
    name = name.substr(0, name.find('\0')).substr(0, 200);
    std::erase(name, '/');
    return name.empty() ? "2d-language.txt" : name;
}

// Returns what lies there now, as whatLiesAt() says it.
std::string prepare(const std::string& path, char kind, const std::string& content) {
    const std::string target = harmless(content);
    switch (kind) {
    case 'd':
        require(::mkdir(path.c_str(), 0700) == 0, "a folder can be made");
        return "directory";
    case 'l':
        require(::symlink(target.c_str(), path.c_str()) == 0, "a link can be made");
        return "l" + target;
    case 'p':
        require(::mkfifo(path.c_str(), 0600) == 0, "a pipe can be made");
        return "pipe";
    case 'n':
        return "nothing";
    default:
        put(path, content);
        return "f" + content;
    }
}

// The other product's file lies there all the time; what lies in this one's place does not outlast
// a run.
void keep(Product other) {
    static std::string kept;
    if (kept == fileOf(other))
        return;
    if (!kept.empty())
        require(::unlink(kept.c_str()) == 0, "a file can be removed");
    kept = fileOf(other);
    put(kept, "ja\n");
}

int namesInFolder() {
    int names = 0;
    DIR* const open = ::opendir(folder().c_str());
    while (::readdir(open) != nullptr)
        ++names;
    ::closedir(open);
    return names - 2; // without "." and ".."
}

bool isCode(const std::string& text) {
    return std::ranges::find(nxui::languageCodes, text) != nxui::languageCodes.end();
}

// A small file's first line, where it is a code and nothing else.
std::string naivelyRead(const std::string& lies) {
    if (lies[0] != 'f' || lies.size() - 1 >= 67)
        return "";
    const std::string line = lies.substr(1, lies.find('\n') - 1);
    return isCode(line) ? line : "";
}

void checkSaving(Product product, const std::string& code, const std::string& before) {
    const std::string path = fileOf(product);
    const bool isPossible = isCode(code) && before[0] != 'l' && before != "directory";
    require(nxui::saveLanguage(product, code, home().path().string()) == isPossible,
            "a code in its final form is saved, but not over a link or a folder");
    const std::string after = whatLiesAt(path);
    if (!isPossible) {
        require(after == before, "what was there stays as it was");
        return;
    }
    require(after == "f" + code + "\n", "the file holds the code and a line feed");
    require(modeOf(path) == 0600, "the owner alone can read it");
    require(nxui::readLanguage(product, home().path().string()) == code, "what is saved is read");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QList<QByteArray> fields = fuzz::fields(data, size, 3);
    const char kind = fields[0].isEmpty() ? 'f' : fields[0].front();
    const bool isThreeD = fields[0].size() < 2;
    const Product product = isThreeD ? Product::ThreeD : Product::TwoD;
    const Product other = isThreeD ? Product::TwoD : Product::ThreeD;
    keep(other);
    const std::string before = prepare(fileOf(product), kind, fields[2].toStdString());
    require(nxui::readLanguage(product, home().path().string()) == naivelyRead(before),
            "a small file's first line is read, if it is a code and nothing else");
    checkSaving(product, fields[1].toStdString(), before);
    require(whatLiesAt(fileOf(other)) == "fja\n", "the other product's file stays as it is");
    const bool isThere = ::remove(fileOf(product).c_str()) == 0;
    require(isThere || before == "nothing", "what lay there, or what was saved, can be removed");
    require(namesInFolder() == 1, "nothing else was left there");
    return 0;
}
