// The child that tests start: one small foreign program with a behaviour per mode.
//
//   child_helper MODE [ARGUMENT...]
//
// It uses the C library alone, so that it starts fast and is never built with a sanitizer.

#include <dirent.h>
#include <sys/types.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

extern char** environ;

namespace {

using Arguments = std::vector<const char*>;

void say(const char* text) {
    std::fputs(text, stdout);
    std::fflush(stdout);
}

[[noreturn]] void hang() {
    for (;;)
        pause();
}

// Leaves a child of its own in its group that never ends by itself.
void leaveChildBehind(bool keepsOutput) {
    if (fork() != 0)
        return;
    signal(SIGTERM, SIG_IGN);
    if (!keepsOutput) {
        close(STDOUT_FILENO);
        close(STDERR_FILENO);
    }
    hang();
}

int writeBytes(long count, const char* trailer) {
    const std::string block(65536, 'b');
    while (count > 0) {
        const std::size_t part = count < 65536 ? std::size_t(count) : block.size();
        if (fwrite(block.data(), 1, part, stdout) != part)
            return 1;
        count -= long(part);
    }
    say(trailer);
    return 0;
}

[[noreturn]] void flood() {
    const std::string block(65536, 'x');
    for (;;)
        if (write(STDOUT_FILENO, block.data(), block.size()) < 0)
            _exit(1);
}

// The numbers of the open descriptors, without the one that reads the list.
int printDescriptors() {
    DIR* folder = opendir("/proc/self/fd");
    if (folder == nullptr)
        folder = opendir("/dev/fd");
    if (folder == nullptr)
        return 1;
    while (const dirent* entry = readdir(folder))
        if (entry->d_name[0] != '.' && std::atoi(entry->d_name) != dirfd(folder))
            std::printf("%s ", entry->d_name);
    closedir(folder);
    return 0;
}

// "blocked" or "ignored" with the number of each signal that is.
int printSignals() {
    sigset_t blocked;
    sigprocmask(SIG_SETMASK, nullptr, &blocked);
    for (int number = 1; number < NSIG; ++number) {
        struct sigaction action{};
        if (sigismember(&blocked, number) == 1)
            std::printf("blocked %d ", number);
        if (sigaction(number, nullptr, &action) == 0 && action.sa_handler != SIG_DFL)
            std::printf("ignored %d ", number);
    }
    return 0;
}

int printFolder() {
    char folder[4096];
    if (getcwd(folder, sizeof folder) == nullptr)
        return 1;
    say(folder);
    return 0;
}

int run(const std::string& mode, const Arguments& arguments) {
    const auto number = [&](std::size_t index) {
        return index < arguments.size() ? std::atol(arguments[index]) : 0;
    };
    if (mode == "exit")
        return int(number(0));
    if (mode == "crash") {
        signal(SIGSEGV, SIG_DFL);
        raise(SIGSEGV);
    } else if (mode == "die-by") {
        raise(int(number(0)));
    } else if (mode == "hang") {
        std::printf("%d\n", int(getpid()));
        say("");
        hang();
    } else if (mode == "ignore-term") {
        signal(SIGTERM, SIG_IGN);
        say("ready\n");
        hang();
    } else if (mode == "exit-on-term") {
        static int status = 3;
        if (!arguments.empty())
            status = int(number(0));
        signal(SIGTERM, [](int) { _exit(status); });
        say("ready\n");
        hang();
    } else if (mode == "leave-behind") { // then waits to be stopped
        leaveChildBehind(false);
        say("ready\n");
        hang();
    } else if (mode == "leave-behind-and-exit") {
        leaveChildBehind(false);
        return 0;
    } else if (mode == "hold-pipe") { // its own child keeps the output open
        leaveChildBehind(true);
        say(arguments.empty() ? "" : arguments[0]);
        return 0;
    } else if (mode == "flood") {
        flood();
    } else if (mode == "flood-ignoring-term") {
        signal(SIGTERM, SIG_IGN);
        signal(SIGPIPE, SIG_IGN);
        while (write(STDOUT_FILENO, "x", 1) > 0) {
        }
        hang();
    } else if (mode == "print-bytes") { // COUNT, then a text
        return writeBytes(number(0), arguments.size() > 1 ? arguments[1] : "");
    } else if (mode == "print-text-and-exit") { // TEXT STATUS
        say(arguments.empty() ? "" : arguments[0]);
        return int(number(1));
    } else if (mode == "print-arguments") {
        for (const char* argument : arguments)
            fwrite(argument, 1, std::strlen(argument) + 1, stdout);
        return 0;
    } else if (mode == "print-environment") {
        for (char** variable = environ; *variable != nullptr; ++variable)
            fwrite(*variable, 1, std::strlen(*variable) + 1, stdout);
        return 0;
    } else if (mode == "print-descriptors") {
        return printDescriptors();
    } else if (mode == "print-signals") {
        return printSignals();
    } else if (mode == "print-folder") {
        return printFolder();
    } else if (mode == "print-group") {
        std::printf("%d %d", int(getpid()), int(getpgrp()));
        return 0;
    } else if (mode == "count-input") {
        long count = 0;
        while (std::getchar() != EOF)
            ++count;
        std::printf("%ld", count);
        return 0;
    } else if (mode == "print-error") {
        std::fputs("to error", stderr);
        return 0;
    }
    std::fprintf(stderr, "child_helper: no mode %s\n", mode.c_str());
    return 99;
}

} // namespace

int main(int count, char** values) {
    if (count < 2)
        return 99;
    return run(values[1], Arguments(values + 2, values + count));
}
