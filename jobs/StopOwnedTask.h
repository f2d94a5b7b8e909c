#pragma once

#include "platform/ChildProcess.h"

namespace jobs {

// Stops a child that a job started: asks it to end, and two seconds later ends what still runs.
// Never blocks. Does nothing for no child and for one that has ended. Any thread.
inline void NXStopOwnedTask(const std::shared_ptr<platform::ChildProcess>& child) {
    platform::stopChild(child);
}

} // namespace jobs
