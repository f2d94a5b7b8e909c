#pragma once

#include "platform/UniqueFd.h"

#include <system_error>

namespace platform {

// Both ends of a pipe, closed with it. One thread at a time.
struct Pipe {
    UniqueFd readEnd;
    UniqueFd writeEnd;
};

// Fills pipe with a fresh pair, both close-on-exec. On failure pipe is unchanged. Any thread.
std::error_code openPipe(Pipe& pipe);

} // namespace platform
