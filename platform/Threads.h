#pragma once

#include <chrono>
#include <functional>
#include <system_error>

namespace platform {

// Runs work on a thread of its own, which may block for as long as it likes and takes no part in
// the program's signals: a request to end the program reaches the main thread. The error says that
// the system has no thread left; work is then destroyed without having run. Work that is still
// running when the program ends is cut off with it, so it must not lean on objects with static
// lifetime. Any thread.
[[nodiscard]] std::error_code startWorker(std::function<void()> work);

// Runs work once, delay from now, on a thread that all such work shares: it must not block. It
// cannot be withdrawn. When the application object is destroyed, work that is still waiting is
// destroyed without having run, and later calls drop theirs until there is another application.
// Any thread.
void runAfter(std::chrono::milliseconds delay, std::function<void()> work);

// Runs work later on the main thread's event loop, in the order of posting, one at a time, and
// never from inside the call. A nested event loop (a dialog) goes on with the work that follows.
// Any thread.
//
// Work posted before there is an application object waits for it. When the application object is
// destroyed, work that has not run is destroyed on the main thread, and work posted after that is
// destroyed by the call, until there is another application object.
void postToMain(std::function<void()> work);

} // namespace platform
