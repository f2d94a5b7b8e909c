// How long a child takes from its start until its exit is known: ChildProcess beside posix_spawn
// and plain fork, with a small program and with 150 MB resident.
//
//   bench_child [ROUNDS]     medians and quartiles in milliseconds
//
// ChildProcess and posix_spawn take turns, so that a change of the machine's load meets both. fork
// runs afterwards: it leaves pages to be copied to whoever comes next.

#include "platform/ChildProcess.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

extern char** environ;

namespace {

const char* const program = "/bin/true";
char* const arguments[] = {const_cast<char*>(program), nullptr};

void fail(const char* what) {
    std::fprintf(stderr, "bench_child: %s failed\n", what);
    std::exit(1);
}

void runOurs() {
    const auto child = platform::ChildProcess::make({.program = program});
    if (child->start({}) || !child->waitForExit().succeeded())
        fail("ChildProcess");
}

void runSpawn() {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (int descriptor = 0; descriptor < 3; ++descriptor)
        posix_spawn_file_actions_addopen(&actions, descriptor, "/dev/null", O_RDWR, 0);
    pid_t id = 0;
    int status = 0;
    if (::posix_spawn(&id, program, &actions, nullptr, arguments, environ) != 0 ||
        ::waitpid(id, &status, 0) != id || status != 0)
        fail("posix_spawn");
    posix_spawn_file_actions_destroy(&actions);
}

void runFork() {
    const pid_t id = ::fork();
    if (id == 0) {
        const int null = ::open("/dev/null", O_RDWR);
        for (int descriptor = 0; descriptor < 3; ++descriptor)
            ::dup2(null, descriptor);
        ::execve(program, arguments, environ);
        ::_exit(127);
    }
    int status = 0;
    if (id < 0 || ::waitpid(id, &status, 0) != id || status != 0)
        fail("fork");
}

struct Way {
    const char* name;
    std::function<void()> run;
    std::vector<double> milliseconds{};
};

void takeTurns(std::vector<Way>& ways, int rounds) {
    constexpr int warmUp = 20;
    for (int round = -warmUp; round < rounds; ++round) {
        for (Way& way : ways) {
            const auto begin = std::chrono::steady_clock::now();
            way.run();
            const std::chrono::duration<double, std::milli> took =
                std::chrono::steady_clock::now() - begin;
            if (round >= 0)
                way.milliseconds.push_back(took.count());
        }
    }
}

double report(const char* size, Way& way) {
    std::sort(way.milliseconds.begin(), way.milliseconds.end());
    const std::size_t count = way.milliseconds.size();
    const double median = way.milliseconds[count / 2];
    std::printf("%-8s %-14s median %.3f ms   quartiles %.3f  %.3f\n", size, way.name, median,
                way.milliseconds[count / 4], way.milliseconds[count * 3 / 4]);
    return median;
}

void measure(const char* size, int rounds) {
    std::vector<Way> ways = {{"ChildProcess", runOurs}, {"posix_spawn", runSpawn}};
    takeTurns(ways, rounds);
    const double ours = report(size, ways[0]);
    const double spawn = report(size, ways[1]);
    std::printf("%-8s ChildProcess / posix_spawn = %.2f\n", size, ours / spawn);
    std::vector<Way> forking = {{"fork", runFork}};
    takeTurns(forking, rounds);
    report(size, forking[0]);
}

} // namespace

int main(int count, char** values) {
    const int rounds = count > 1 ? std::atoi(values[1]) : 1000;
    if (rounds < 1)
        fail("reading the number of rounds");
    measure("small", rounds);
    const std::vector<char> resident(150'000'000, 1);
    measure("150 MB", rounds);
    // Read, so that the memory is really used until here.
    return resident.back() == 1 ? 0 : 1;
}
