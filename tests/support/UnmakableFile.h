#pragma once

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <string_view>

// While this lives, this program's own code cannot make a file of that name, for that reason: an
// administrator, too, for whom no permission is an obstacle. Not what the toolkit makes. One source
// of a program may include this. Linux only.
class UnmakableFile {
public:
    UnmakableFile(const std::string& name, int error) {
        end_ = '/' + name;
        error_ = error;
    }
    UnmakableFile(const UnmakableFile&) = delete;
    UnmakableFile& operator=(const UnmakableFile&) = delete;
    ~UnmakableFile() { error_ = 0; }

    static int fateOf(std::string_view path, int flags) {
        return (flags & O_CREAT) != 0 && path.ends_with(end_) ? error_ : 0;
    }

private:
    static inline std::string end_;
    static inline int error_ = 0;
};

// Instead of the C library's. Its headers may say more of that than another definition can.
extern "C" int refusingOpen(const char* path, int flags, mode_t mode) __asm__("open");

int refusingOpen(const char* path, int flags, mode_t mode) {
    if (const int error = UnmakableFile::fateOf(path, flags); error != 0) {
        errno = error;
        return -1;
    }
    return int(::syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}
