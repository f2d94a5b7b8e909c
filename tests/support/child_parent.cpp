// A program of its own that starts a child, for tests of what happens to the child of another
// program than the test itself.
//
//   child_parent keep HELPER               starts a child that hangs, prints both ids, then hangs
//   child_parent closed-standard HELPER    starts one with descriptors 0 to 2 closed; exits 0 if
//                                          that one's output arrived whole

#include "platform/ChildProcess.h"

#include <unistd.h>

#include <cstdio>
#include <string>

namespace {

std::string readAll(int descriptor) {
    std::string text;
    char block[256];
    for (;;) {
        const ssize_t got = ::read(descriptor, block, sizeof block);
        if (got <= 0)
            return text;
        text.append(block, std::size_t(got));
    }
}

int keep(const std::string& helper) {
    platform::Pipe pipe;
    if (platform::openPipe(pipe))
        return 2;
    const auto child = platform::ChildProcess::make(
        {.program = helper, .arguments = {"hang"}, .output = pipe.writeEnd.get()});
    if (child->start({}))
        return 3;
    char line[32] = {};
    if (::read(pipe.readEnd.get(), line, sizeof line - 1) <= 0)
        return 4;
    std::printf("%d %s", int(::getpid()), line);
    std::fflush(stdout);
    for (;;)
        ::pause();
}

int withClosedStandard(const std::string& helper) {
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::close(descriptor);
    platform::Pipe pipe; // takes 0 and 1, the numbers that the child overwrites
    if (platform::openPipe(pipe) || pipe.writeEnd.get() > STDERR_FILENO)
        return 2;
    const auto child = platform::ChildProcess::make({.program = helper,
                                                     .arguments = {"print-descriptors"},
                                                     .output = pipe.writeEnd.get(),
                                                     .error = pipe.writeEnd.get()});
    if (child->start({}))
        return 3;
    pipe.writeEnd.reset();
    if (readAll(pipe.readEnd.get()) != "0 1 2 ")
        return 4;
    return child->waitForExit().succeeded() ? 0 : 5;
}

} // namespace

int main(int count, char** values) {
    if (count != 3)
        return 99;
    const std::string mode = values[1];
    if (mode == "keep")
        return keep(values[2]);
    if (mode == "closed-standard")
        return withClosedStandard(values[2]);
    return 99;
}
