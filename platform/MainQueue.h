#pragma once

#include <functional>

namespace platform {

// Runs work later on the main thread's event loop, in the order of posting, one at a time, and
// never from inside the call. A nested event loop (a dialog) goes on with the work that follows.
// Any thread.
//
// Work posted before there is an application object waits for it. When the application object is
// destroyed, work that has not run is destroyed on the main thread, and work posted after that is
// destroyed by the call, until there is another application object.
void postToMain(std::function<void()> work);

} // namespace platform
