#pragma once

#include "platform/ChildProcess.h"
#include "platform/Descriptors.h"

#include <sys/types.h>

#include <system_error>
#include <vector>

namespace platform {

// Starts the command in a process group of its own and sets pid to its id, which the caller must
// wait for. On failure nothing is left behind, pid is untouched, and the error is the reason why
// the program could not be executed or its working directory not be entered. Main thread.
std::error_code launchChild(const ChildCommand& command, pid_t& pid);

// What the launchers of both systems do alike. Main thread.

// The program and its arguments for exec, with the null at the end. Borrowed: valid as long as the
// command.
std::vector<char*> argumentVector(const ChildCommand& command);

// The descriptor, or a close-on-exec copy of it in holder if it is one of the first three: those
// numbers are overwritten in the child, one after the other. -1 for -1; negative with errno when
// there is no descriptor left.
int awayFromStandard(int descriptor, UniqueFd& holder);

// Lets the kernel keep how a child ended: a program that was started with SIGCHLD ignored would
// never learn it.
void keepExitStatuses();

} // namespace platform
