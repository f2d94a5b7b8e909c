// What a search costs over the bare curl command with the same arguments: run by bench/search.py,
// which starts the local geocoder first.
#include "search/NXPhotonSearch.h"
#include "search/Photon.h"
#include "search/PhotonTransfer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <vector>

using namespace Qt::StringLiterals;
using namespace search;

namespace {

constexpr int runs = 41;

const QUrl& address() {
    static const QUrl url = photonQuery(QUrl(u"https://photon.komoot.io/api/"_s), u"Berlin"_s);
    return url;
}

double milliseconds(const QElapsedTimer& timer) {
    return double(timer.nsecsElapsed()) / 1e6;
}

// Start to exit of curl, its answer going nowhere.
double bareCurl() {
    std::vector<std::string> words = photonArguments(address());
    words.insert(words.begin(), "curl");
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (const int stream : {STDOUT_FILENO, STDERR_FILENO})
        posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_WRONLY, 0);
    QElapsedTimer timer;
    timer.start();
    pid_t child = 0;
    int status = 1;
    if (posix_spawn(&child, "/usr/bin/curl", &actions, nullptr, arguments.data(), environ) == 0)
        waitpid(child, &status, 0);
    const double taken = milliseconds(timer);
    posix_spawn_file_actions_destroy(&actions);
    if (status != 0)
        std::exit(1);
    return taken;
}

// From the request to the body on the main thread.
double ourSearch() {
    QEventLoop loop;
    QElapsedTimer timer;
    timer.start();
    const auto request = NXPhotonSearch::make([](auto) { return QString(); });
    bool isAnswered = false;
    request->start(address(), [&](const std::optional<QByteArray>& body, const QString&) {
        isAnswered = body.has_value();
        loop.quit();
    });
    loop.exec();
    const double taken = milliseconds(timer);
    if (!isAnswered)
        std::exit(1);
    return taken;
}

double median(std::vector<double> values) {
    std::ranges::nth_element(values, values.begin() + values.size() / 2);
    return values.at(values.size() / 2);
}

} // namespace

int main(int argc, char* argv[]) {
    QCoreApplication application(argc, argv);
    std::vector<double> bare;
    std::vector<double> ours;
    bareCurl();
    ourSearch();
    for (int i = 0; i < runs; ++i) {
        bare.push_back(bareCurl());
        ours.push_back(ourSearch());
    }
    const double difference = median(ours) - median(bare);
    std::printf(
        "bare curl %.1f ms, search %.1f ms, difference %.1f ms (at most 15), median of %d\n",
        median(bare), median(ours), difference, runs);
}
