#include "platform/StopChild.h"

#include "platform/Background.h"

#include <utility>

namespace platform {

void stopChild(std::shared_ptr<ChildProcess> child, std::chrono::milliseconds patience) {
    if (!child || !child->isRunning())
        return;
    child->terminate();
    runAfter(patience, [stopped = std::move(child)] { stopped->kill(); });
}

} // namespace platform
