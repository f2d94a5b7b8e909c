#pragma once

#include <unistd.h>

#include <utility>

namespace platform {

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
    UniqueFd(const UniqueFd&) = delete;
    UniqueFd& operator=(const UniqueFd&) = delete;
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

} // namespace platform
