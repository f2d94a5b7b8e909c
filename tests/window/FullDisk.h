#pragma once

#include <sys/resource.h>

#include <csignal>

// No file can grow while this lives, as on a full disk.
class FullDisk {
public:
    FullDisk() {
        // Instead of the error there would be a signal.
        former_ = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &limit_);
        const rlimit none{0, limit_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &none);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &limit_);
        std::signal(SIGXFSZ, former_);
    }

private:
    rlimit limit_{};
    void (*former_)(int);
};
