#pragma once

#include <cerrno>
#include <system_error>

namespace platform {

// The error of the system call that has just failed, or the one with this errno. Any thread.
inline std::error_code systemError(int number = errno) {
    return {number, std::generic_category()};
}

} // namespace platform
