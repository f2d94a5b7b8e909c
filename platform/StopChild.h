#pragma once

#include "platform/ChildProcess.h"

#include <chrono>
#include <memory>

namespace platform {

inline constexpr std::chrono::seconds stopPatience{2};

// The one way to stop a child: asks it to end now, and kills it with its group if it still runs
// after patience. Does nothing for null and for a child that has ended. Never blocks. Any thread.
void stopChild(std::shared_ptr<ChildProcess> child,
               std::chrono::milliseconds patience = stopPatience);

} // namespace platform
