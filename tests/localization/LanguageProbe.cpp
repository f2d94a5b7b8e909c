// language_probe MODE [ARGUMENT...]: does one thing with the language functions in a fresh process
// and prints what came out.
//
//   current                   the current languages of the 2D and the 3D plug-in
//   current-threads           the 3D plug-in's language as eight threads get it at once
//   current-save CODE         the 3D plug-in's language, before and after saving CODE for it
//   persist                   settles the language of the 3D plug-in as a first start does
//   save-limited BYTES CODE   whether saving succeeds when no file may grow beyond BYTES
//   save-without-files CODE   whether saving succeeds when no file can be opened
//   catalog                   every cell of the catalogue, row by row, each ended by a NUL
//   local TEXT...             NXLocal of each text, a line each

#include "localization/Language.h"
#include "localization/NXLocal.h"
#include "localization/Translation.h"

#include <sys/resource.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <iostream>
#include <string>
#include <thread>
#include <vector>
using namespace localization;

using nxui::Product;

namespace {

void printCurrentFromThreads() {
    std::array<std::string, 8> languages;
    std::vector<std::thread> threads;
    for (std::string& language : languages)
        threads.emplace_back([&] { language = nxui::currentLanguage(Product::ThreeD); });
    for (std::thread& thread : threads)
        thread.join();
    for (const std::string& language : languages)
        std::cout << language << '\n';
}

void printSaving(const std::string& code) {
    const bool isSaved = nxui::saveLanguage(Product::ThreeD, code, nxui::homeDirectory());
    std::cout << (isSaved ? "saved\n" : "not saved\n");
}

void printSavingWithin(decltype(RLIMIT_FSIZE) resource, rlim_t limit, const std::string& code) {
    rlimit usual{};
    if (getrlimit(resource, &usual) != 0)
        std::cout << "no limit known\n";
    const rlimit limits{limit, usual.rlim_max};
    if (setrlimit(resource, &limits) != 0)
        std::cout << "no limit set\n";
    printSaving(code);
    // What looks for leaks when this ends needs files itself.
    setrlimit(resource, &usual);
}

void printCatalog() {
    for (const nxui::CatalogRow& row : nxui::catalog)
        for (const char* cell : row)
            std::cout << (cell ? cell : "") << '\0';
}

} // namespace

int main(int count, char** values) {
    const std::vector<std::string> arguments(values + std::min(count, 1), values + count);
    const std::string mode = arguments.empty() ? "" : arguments[0];
    if (mode == "current") {
        std::cout << nxui::currentLanguage(Product::TwoD) << ' '
                  << nxui::currentLanguage(Product::ThreeD) << '\n';
    } else if (mode == "current-threads") {
        printCurrentFromThreads();
    } else if (mode == "current-save" && arguments.size() == 2) {
        std::cout << nxui::currentLanguage(Product::ThreeD) << '\n';
        printSaving(arguments[1]);
        std::cout << nxui::currentLanguage(Product::ThreeD) << '\n';
    } else if (mode == "persist") {
        nxui::persistInitialLanguage(Product::ThreeD);
    } else if (mode == "save-limited" && arguments.size() == 3) {
        std::signal(SIGXFSZ, SIG_IGN); // so that the write comes back short
        printSavingWithin(RLIMIT_FSIZE, std::stoul(arguments[1]), arguments[2]);
    } else if (mode == "save-without-files" && arguments.size() == 2) {
        printSavingWithin(RLIMIT_NOFILE, 3, arguments[1]);
    } else if (mode == "catalog") {
        printCatalog();
    } else if (mode == "local") {
        for (auto text = arguments.begin() + 1; text != arguments.end(); ++text)
            std::cout << NXLocal(QString::fromStdString(*text)).toStdString() << '\n';
    } else {
        std::cerr << "language_probe: unknown mode " << mode << '\n';
        return 2;
    }
    return 0;
}
