// How long one lookup takes in a catalogue of the full size, beside a bare binary search, the same
// with a copy of the result, and gettext with the same rows.
//
//   bench_translate [--benchmark_repetitions=9 --benchmark_enable_random_interleaving=true ...]
//
// Every way looks up the same keys in the same random order, long enough for the processor not to
// learn it, and is checked against the table before it is measured.

#include "localization/Translation.h"

#include <benchmark/benchmark.h>
#include <libintl.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>

namespace {

using nxui::CatalogRow;

constexpr const char* domain = "bench";

[[noreturn]] void fail(const std::string& what) {
    std::fprintf(stderr, "bench_translate: %s\n", what.c_str());
    std::exit(1);
}

class Table {
public:
    Table() : rows(nxui::catalog.begin(), nxui::catalog.end()) {
        for (const CatalogRow& row : rows)
            keys.emplace_back(row[0]);
        std::mt19937 random(20261121);
        for (std::size_t& position : order)
            position = random() % keys.size();
    }

    std::vector<CatalogRow> rows;
    std::vector<std::string> keys;
    std::vector<std::size_t> order = std::vector<std::size_t>(std::size_t(1) << 16); // of look-ups
};

const Table& table() {
    static const Table made;
    return made;
}

const char* bareSearch(const std::string& text) {
    const auto& rows = table().rows;
    const auto row = std::lower_bound(
        rows.begin(), rows.end(), text.c_str(),
        [](const CatalogRow& left, const char* right) { return std::strcmp(left[0], right) < 0; });
    return row != rows.end() && text == (*row)[0] ? (*row)[1] : nullptr;
}

std::string quoted(const std::string& text) {
    std::string result = "\"";
    for (const char byte : text)
        if (byte == '\n')
            result += "\\n";
        else if (byte == '"' || byte == '\\')
            result += std::string("\\") + byte;
        else
            result += byte;
    return result + '"';
}

// Makes a file of the table's English column and tells gettext where it is.
void loadIntoGettext(const std::filesystem::path& folder) {
    const std::filesystem::path messages = folder / "en" / "LC_MESSAGES";
    std::filesystem::create_directories(messages);
    std::ofstream po(folder / "bench.po");
    po << "msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=UTF-8\\n\"\n\n";
    for (const CatalogRow& row : table().rows)
        po << "msgid " << quoted(row[0]) << "\nmsgstr " << quoted(row[1]) << "\n\n";
    po.close();
    const std::string command = std::string(MSGFMT) + " -o '" + (messages / "bench.mo").string() +
                                "' '" + (folder / "bench.po").string() + "'";
    if (std::system(command.c_str()) != 0)
        fail("msgfmt failed");
    setenv("LANGUAGE", "en", 1);
    if (!std::setlocale(LC_ALL, "C.UTF-8"))
        fail("needs the locale C.UTF-8");
    bindtextdomain(domain, folder.c_str());
}

void checkEveryWay() {
    for (const CatalogRow& row : table().rows) {
        const std::string key = row[0];
        const char* found = bareSearch(key);
        if (!found || std::strcmp(found, row[1]) != 0)
            fail("bare search: " + key);
        if (nxui::translate(key, "en", table().rows) != row[1])
            fail("translate: " + key);
        if (std::strcmp(dgettext(domain, row[0]), row[1]) != 0)
            fail("gettext: " + key);
    }
}

template<typename Lookup>
void measure(benchmark::State& state, Lookup lookup) {
    const std::vector<std::string>& keys = table().keys;
    const std::vector<std::size_t>& order = table().order;
    std::size_t next = 0;
    for ([[maybe_unused]] auto round : state)
        benchmark::DoNotOptimize(lookup(keys[order[next++ % order.size()]]));
}

void translateToEnglish(benchmark::State& state) {
    const std::string language = "en";
    measure(state,
            [&](const std::string& key) { return nxui::translate(key, language, table().rows); });
}
BENCHMARK(translateToEnglish);

// The last column, found after all the others.
void translateToHindi(benchmark::State& state) {
    const std::string language = "hi";
    measure(state,
            [&](const std::string& key) { return nxui::translate(key, language, table().rows); });
}
BENCHMARK(translateToHindi);

void bareSearchAlone(benchmark::State& state) {
    measure(state, [](const std::string& key) { return bareSearch(key); });
}
BENCHMARK(bareSearchAlone);

void bareSearchAndCopy(benchmark::State& state) {
    measure(state, [](const std::string& key) { return std::string(bareSearch(key)); });
}
BENCHMARK(bareSearchAndCopy);

void gettextAlone(benchmark::State& state) {
    measure(state, [](const std::string& key) { return dgettext(domain, key.c_str()); });
}
BENCHMARK(gettextAlone);

void gettextAndCopy(benchmark::State& state) {
    measure(state,
            [](const std::string& key) { return std::string(dgettext(domain, key.c_str())); });
}
BENCHMARK(gettextAndCopy);

} // namespace

int main(int count, char** values) {
    benchmark::Initialize(&count, values);
    if (benchmark::ReportUnrecognizedArguments(count, values))
        return 1;
    std::string folder = (std::filesystem::temp_directory_path() / "bench-XXXXXX").string();
    if (!mkdtemp(folder.data()))
        fail("no temporary folder");
    loadIntoGettext(folder);
    checkEveryWay(); // also has gettext read the file before the folder goes
    std::filesystem::remove_all(folder);
    benchmark::RunSpecifiedBenchmarks();
}
