#pragma once

#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace platform {

// The error of the system call that has just failed, or the one with this errno. Any thread.
inline std::error_code systemError(int number = errno) {
    return {number, std::generic_category()};
}

// What the system call returns when no signal interrupts it. Any thread.
template<typename Call>
auto uninterrupted(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

// Owns one file descriptor and closes it. Holds -1 when it owns none. One thread at a time.
class UniqueFd {
public:
    UniqueFd() = default;
    explicit UniqueFd(int descriptor) : descriptor_(descriptor) {}
    UniqueFd(UniqueFd&& other) noexcept : descriptor_(other.release()) {}
    UniqueFd& operator=(UniqueFd&& other) noexcept {
        reset(other.release());
        return *this;
    }
    ~UniqueFd() { reset(); }

    int get() const { return descriptor_; }
    explicit operator bool() const { return descriptor_ >= 0; }

    // Gives the descriptor away: the caller closes it.
    int release() { return std::exchange(descriptor_, -1); }

    void reset(int descriptor = -1) {
        // close() is not repeated after an interruption: the number may already be another file's.
        if (descriptor_ >= 0)
            ::close(descriptor_);
        descriptor_ = descriptor;
    }

private:
    int descriptor_ = -1;
};

// Both ends of a pipe, closed with it. One thread at a time.
struct Pipe {
    UniqueFd readEnd;
    UniqueFd writeEnd;
};

// Fills pipe with a fresh pair, both close-on-exec. On failure pipe is unchanged. Any thread.
std::error_code openPipe(Pipe& pipe);

} // namespace platform
