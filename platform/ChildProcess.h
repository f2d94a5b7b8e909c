#pragma once

#include "platform/Descriptors.h"

#include <sys/types.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <vector>

namespace platform {

// What to run: an argument vector, never a line for a shell. The environment is the program's own,
// and standard input reads nothing. A plain value: one thread at a time.
struct ChildCommand {
    std::string program; // a path; it is not searched for
    std::vector<std::string> arguments{};
    std::string workingDirectory{}; // empty: the program's own
    int output = -1;                // borrowed until start() returns; -1: the null device
    int error = -1;                 // likewise
};

// How a child ended. A plain value: one thread at a time.
struct ChildExit {
    enum class Kind {
        Unknown,  // somebody else took the status
        Exited,   // value is the exit status, 0 to 255
        Signalled // value is the number of the signal
    };

    Kind kind = Kind::Unknown;
    int value = 0;

    bool succeeded() const { return kind == Kind::Exited && value == 0; }
    bool operator==(const ChildExit&) const = default;
};

// One child process, from its start until it has been reaped.
//
// States: created -> running -> ended. A failed start stays in created.
//
// Invariants: the child leads a process group of its own. Only this object waits for it, by its id,
// on a thread of its own. The id is used only while running, under the lock under which the child
// is reaped, so that no signal can reach a stranger that has been given the same number. When a
// child that was asked to stop ends, what is left of its group is killed before the id is given up.
//
// On Linux the kernel kills the child (not its own children) when the program dies.
class ChildProcess : public std::enable_shared_from_this<ChildProcess> {
public:
    // Any thread.
    static std::shared_ptr<ChildProcess> make(ChildCommand command);

    // Starts the child and returns once it executes its program. On failure the error says why
    // (a missing or forbidden program, a bad working directory, no resources), nothing is left
    // behind and onExit is never called. An object starts one child only.
    // onExit may be empty. It is called exactly once, and destroyed, on a thread of its own, after
    // isRunning() has become false. The object lives until then. Main thread.
    std::error_code start(std::function<void(ChildExit)> onExit);

    // False before the start and from the moment of reaping. Any thread.
    bool isRunning() const;

    // Asks the tool itself to end (SIGTERM). Does nothing unless it runs. Any thread.
    void terminate();

    // Ends the tool and everything else in its group (SIGKILL). Does nothing unless the tool runs.
    // Any thread.
    void kill();

    // Blocks until the child has been reaped and says how it ended; for a child that was never
    // started it returns unknown at once. Any thread, also several.
    ChildExit waitForExit() const;

    // Becomes readable, for poll(), when the child has been reaped, and stays so. Belongs to this
    // object; nobody may read from it. -1 before the start. Any thread after the start.
    int exitDescriptor() const { return exited_.readEnd.get(); }

private:
    enum class State { Created, Running, Ended };

    explicit ChildProcess(ChildCommand command);
    ChildExit awaitEnd(pid_t pid);
    ChildExit reap(bool known);

    const ChildCommand command_;
    Pipe exited_; // holds one byte once the child has been reaped

    mutable std::mutex mutex_; // guards everything below
    mutable std::condition_variable ended_;
    State state_ = State::Created;
    pid_t id_ = 0; // the child's while running; later perhaps somebody else's
    bool stopRequested_ = false;
    ChildExit exit_;
};

inline constexpr std::chrono::seconds stopPatience{2};

// The one way to stop a child: asks it to end now, and kills it with its group if it still runs
// after patience. Does nothing for null and for a child that has ended. Never blocks. Any thread.
void stopChild(const std::shared_ptr<ChildProcess>& child,
               std::chrono::milliseconds patience = stopPatience);

} // namespace platform
