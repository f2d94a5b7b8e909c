#pragma once

#include "platform/ChildProcess.h"

#include <sys/types.h>

#include <system_error>

namespace platform {

// Starts the command in a process group of its own and sets pid to its id, which the caller must
// wait for. On failure nothing is left behind, pid is untouched, and the error is the reason why
// the program could not be executed or its working directory not be entered. Main thread.
std::error_code launchChild(const ChildCommand& command, pid_t& pid);

} // namespace platform
