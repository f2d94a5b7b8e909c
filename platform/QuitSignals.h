#pragma once

#include <functional>

namespace platform {

// From now on a request to end the program (SIGTERM, SIGINT, SIGHUP) calls onRequest on the main
// thread's event loop instead of ending it. Several requests in a row may come as one call. A
// later call replaces onRequest. Main thread, while an application object exists.
void takeQuitSignals(std::function<void()> onRequest);

} // namespace platform
