#pragma once

#include <functional>
#include <system_error>

namespace platform {

// Runs work on a detached thread of its own that takes no part in the program's signals: a request
// to end the program reaches the main thread. Fails, without running work, when the system has no
// thread left. Any thread.
std::error_code startWorker(std::function<void()> work);

} // namespace platform
