#pragma once

#include "platform/ChildProcess.h"
#include "platform/UniqueFd.h"

#include <sys/types.h>

#include <vector>

// What the launchers of both systems do alike. Main thread.
namespace platform {

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
