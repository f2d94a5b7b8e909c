#include "platform/Descriptors.h"

#include <fcntl.h>

namespace platform {

std::error_code openPipe(Pipe& pipe) {
    int ends[2];
#ifdef __APPLE__
    // No pipe2 here. The gap until the flags are set is harmless for our own children, which
    // inherit nothing that is not handed to them (see ChildLaunchMac.cpp).
    if (::pipe(ends) != 0)
        return systemError();
    ::fcntl(ends[0], F_SETFD, FD_CLOEXEC);
    ::fcntl(ends[1], F_SETFD, FD_CLOEXEC);
#else
    if (::pipe2(ends, O_CLOEXEC) != 0)
        return systemError();
#endif
    pipe.readEnd.reset(ends[0]);
    pipe.writeEnd.reset(ends[1]);
    return {};
}

} // namespace platform
