#pragma once

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <functional>

// While this lives, each fsync of this program asks first: 0 lets it happen, all else is its error.
// One source of a program may include this. Linux only.
class Syncs {
public:
    explicit Syncs(std::function<int(int file)> asked) { asked_ = std::move(asked); }
    Syncs(const Syncs&) = delete;
    Syncs& operator=(const Syncs&) = delete;
    ~Syncs() { asked_ = nullptr; }

    static int fateOf(int file) { return asked_ ? asked_(file) : 0; }

private:
    static inline std::function<int(int file)> asked_;
};

// Instead of the C library's. Its headers may say more of that than another definition can.
extern "C" int askedFsync(int file) __asm__("fsync");

int askedFsync(int file) {
    if (const int error = Syncs::fateOf(file); error != 0) {
        errno = error;
        return -1;
    }
    return int(::syscall(SYS_fsync, file));
}
