#include "platform/ChildLaunch.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <string>

namespace platform {

std::vector<char*> argumentVector(const ChildCommand& command) {
    // exec takes pointers to changeable text for historical reasons, and changes nothing.
    std::vector<char*> arguments{const_cast<char*>(command.program.c_str())};
    for (const std::string& argument : command.arguments)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    return arguments;
}

int awayFromStandard(int descriptor, UniqueFd& holder) {
    if (descriptor < 0 || descriptor > STDERR_FILENO)
        return descriptor;
    holder.reset(::fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
    return holder.get();
}

void keepExitStatuses() {
    struct sigaction action{};
    if (::sigaction(SIGCHLD, nullptr, &action) != 0)
        return;
    const bool handled = (action.sa_flags & SA_SIGINFO) != 0 ||
                         (action.sa_handler != SIG_IGN && action.sa_handler != SIG_DFL);
    if (handled && (action.sa_flags & SA_NOCLDWAIT) == 0)
        return;
    if (!handled)
        action.sa_handler = SIG_DFL;
    action.sa_flags &= ~SA_NOCLDWAIT;
    ::sigaction(SIGCHLD, &action, nullptr);
}

} // namespace platform
