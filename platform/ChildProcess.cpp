#include "platform/ChildProcess.h"

#include "platform/ChildLaunch.h"
#include "platform/Threads.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <utility>

namespace platform {
namespace {

bool holdsNul(const std::string& text) {
    return text.find('\0') != std::string::npos;
}

// A text with a NUL inside would arrive cut short, which is another program or another folder.
bool canBePassed(const ChildCommand& command) {
    return !holdsNul(command.program) && !holdsNul(command.workingDirectory) &&
           std::none_of(command.arguments.begin(), command.arguments.end(), holdsNul);
}

} // namespace

std::shared_ptr<ChildProcess> ChildProcess::make(ChildCommand command) {
    return std::shared_ptr<ChildProcess>(new ChildProcess(std::move(command)));
}

ChildProcess::ChildProcess(ChildCommand command) : command_(std::move(command)) {}

std::error_code ChildProcess::start(std::function<void(ChildExit)> onExit) {
    if (!canBePassed(command_))
        return std::make_error_code(std::errc::invalid_argument);
    const std::lock_guard lock(mutex_);
    if (state_ != State::Created)
        return std::make_error_code(std::errc::operation_not_permitted);
    if (!exited_.readEnd) {
        if (const std::error_code failure = openPipe(exited_))
            return failure;
    }
    pid_t pid = 0;
    if (const std::error_code failure = launchChild(command_, pid))
        return failure;

    auto watch = [self = shared_from_this(), pid, report = std::move(onExit)] {
        const ChildExit exit = self->awaitEnd(pid);
        if (report)
            report(exit);
    };
    if (const std::error_code failure = startWorker(std::move(watch))) {
        ::kill(-pid, SIGKILL);
        uninterrupted([&] { return ::waitpid(pid, nullptr, 0); });
        return failure;
    }
    id_ = pid;
    state_ = State::Running;
    return {};
}

bool ChildProcess::isRunning() const {
    const std::lock_guard lock(mutex_);
    return state_ == State::Running;
}

void ChildProcess::terminate() {
    const std::lock_guard lock(mutex_);
    if (state_ != State::Running)
        return;
    stopRequested_ = true;
    ::kill(id_, SIGTERM);
}

void ChildProcess::kill() {
    const std::lock_guard lock(mutex_);
    if (state_ != State::Running)
        return;
    stopRequested_ = true;
    ::kill(-id_, SIGKILL);
}

ChildExit ChildProcess::waitForExit() const {
    std::unique_lock lock(mutex_);
    ended_.wait(lock, [this] { return state_ != State::Running; });
    return exit_;
}

ChildExit ChildProcess::awaitEnd(pid_t pid) {
    // Waits without reaping: until the lock is held, the id must stay the child's own.
    siginfo_t ignored{};
    const int waited = uninterrupted(
        [&] { return ::waitid(P_PID, static_cast<id_t>(pid), &ignored, WEXITED | WNOWAIT); });
    ChildExit exit;
    {
        const std::lock_guard lock(mutex_);
        exit = exit_ = reap(waited == 0);
        state_ = State::Ended;
    }
    ended_.notify_all();
    [[maybe_unused]] const ssize_t told = ::write(exited_.writeEnd.get(), "", 1);
    return exit;
}

// Called with the lock held. When the child is not known (any more), its id is nobody's to signal.
ChildExit ChildProcess::reap(bool known) {
    if (!known)
        return {};
    if (stopRequested_)
        ::kill(-id_, SIGKILL);
    int status = 0;
    if (uninterrupted([&] { return ::waitpid(id_, &status, 0); }) != id_)
        return {};
    if (WIFEXITED(status))
        return {ChildExit::Kind::Exited, WEXITSTATUS(status)};
    return {ChildExit::Kind::Signalled, WTERMSIG(status)};
}

void stopChild(const std::shared_ptr<ChildProcess>& child, std::chrono::milliseconds patience) {
    if (!child || !child->isRunning())
        return;
    child->terminate();
    // While it runs it holds itself; when it has ended, its descriptors are not to wait for this.
    runAfter(patience, [stopped = std::weak_ptr(child)] {
        if (const auto running = stopped.lock())
            running->kill();
    });
}

} // namespace platform
