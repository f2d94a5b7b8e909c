#pragma once

#include <sys/resource.h>

#include <csignal>

// While this lives no file can grow beyond so many bytes, as on a full disk.
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes = 0) {
        // Instead of the error there would be a signal.
        former_ = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &limit_);
        const rlimit smaller{bytes, limit_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &smaller);
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
