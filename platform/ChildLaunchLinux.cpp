#include "platform/ChildLaunch.h"
#include "platform/Descriptors.h"

#include <fcntl.h>
#include <pthread.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <vector>

namespace platform {
namespace {

// Everything the child needs, made ready before the fork: the child may neither allocate nor lock.
struct Plan {
    const char* program;
    char* const* arguments;
    char* const* environment;
    const char* workingDirectory; // null: inherited
    int input;                    // this and the next three are 3 or greater
    int output;
    int error;
    int failure; // the child writes errno here when it cannot become the tool
    pid_t parent;
};

void resetSignals() {
    struct sigaction standard{};
    standard.sa_handler = SIG_DFL;
    // The numbers that refuse (SIGKILL, SIGSTOP, the C library's own) have no handler of ours.
    for (int number = 1; number < NSIG; ++number)
        ::sigaction(number, &standard, nullptr);
    // Only now, with every handler gone: the child still runs in the program's memory.
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

bool prepare(const Plan& plan) {
    if (::setpgid(0, 0) != 0)
        return false;
    // Dies with the program, so that a crash leaves no tool running. If the program died before
    // this took effect, the child has another parent by now.
    if (::prctl(PR_SET_PDEATHSIG, SIGKILL) != 0)
        return false;
    if (::getppid() != plan.parent)
        ::_exit(127);
    if (plan.workingDirectory != nullptr && ::chdir(plan.workingDirectory) != 0)
        return false;
    if (::dup2(plan.input, STDIN_FILENO) < 0 || ::dup2(plan.output, STDOUT_FILENO) < 0 ||
        ::dup2(plan.error, STDERR_FILENO) < 0)
        return false;
    // Our own descriptors are close-on-exec; this is for those of libraries and of whoever started
    // the program. Kernels before 5.11 refuse it, and the tool then inherits those.
    ::close_range(3, UINT_MAX, CLOSE_RANGE_CLOEXEC);
    resetSignals();
    return true;
}

// Runs in the child, in the program's own memory and on its stack: async-signal-safe calls only,
// and no way back.
[[noreturn, gnu::noinline]] void becomeTool(const Plan& plan) {
    if (prepare(plan))
        ::execve(plan.program, plan.arguments, plan.environment);
    const int reason = errno;
    [[maybe_unused]] const ssize_t told = ::write(plan.failure, &reason, sizeof reason);
    ::_exit(127);
}

// vfork, because fork copies the page tables of the whole program: 5 ms instead of half of one once
// 150 MB are resident. A function of its own, so that nothing lives here that the child could
// change under the parent's feet.
[[gnu::noinline]] pid_t forkTool(const Plan& plan) {
    // NOLINTNEXTLINE(clang-analyzer-security.insecureAPI.vfork, bugprone-unsafe-functions)
    const pid_t pid = ::vfork();
    if (pid == 0)
        becomeTool(plan); // NOLINT(clang-analyzer-unix.Vfork)
    return pid;
}

// The errno that the child wrote, or 0 once exec has closed its end.
int reasonFrom(int failure) {
    int reason = 0;
    const ssize_t got = uninterrupted([&] { return ::read(failure, &reason, sizeof reason); });
    return got == ssize_t(sizeof reason) ? reason : 0;
}

} // namespace

std::error_code launchChild(const ChildCommand& command, pid_t& pid) {
    // The kernel kills the child when the thread that made it ends, not when the program does.
    if (::gettid() != ::getpid())
        return std::make_error_code(std::errc::operation_not_permitted);
    keepExitStatuses();

    const std::vector<char*> arguments = argumentVector(command);
    const UniqueFd null(::open("/dev/null", O_RDWR | O_CLOEXEC));
    if (!null)
        return systemError();
    Pipe failure;
    if (const std::error_code error = openPipe(failure))
        return error;

    UniqueFd copies[4];
    const auto placed = [&](int descriptor, UniqueFd& copy) {
        return awayFromStandard(descriptor >= 0 ? descriptor : null.get(), copy);
    };
    const Plan plan{
        .program = command.program.c_str(),
        .arguments = arguments.data(),
        .environment = environ,
        .workingDirectory =
            command.workingDirectory.empty() ? nullptr : command.workingDirectory.c_str(),
        .input = placed(null.get(), copies[0]),
        .output = placed(command.output, copies[1]),
        .error = placed(command.error, copies[2]),
        .failure = placed(failure.writeEnd.get(), copies[3]),
        .parent = ::getpid(),
    };
    if (plan.input < 0 || plan.output < 0 || plan.error < 0 || plan.failure < 0)
        return systemError();

    // No handler of the program may run in the child, which shares its memory.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &before);
    const pid_t child = forkTool(plan);
    const int forkError = errno;
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (child < 0)
        return systemError(forkError);

    failure.writeEnd.reset();
    copies[3].reset();
    if (const int reason = reasonFrom(failure.readEnd.get())) {
        uninterrupted([&] { return ::waitpid(child, nullptr, 0); });
        return systemError(reason);
    }
    pid = child;
    return {};
}

} // namespace platform
