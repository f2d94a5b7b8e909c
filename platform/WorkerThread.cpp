#include "platform/WorkerThread.h"

#include <csignal>
#include <thread>
#include <utility>

namespace platform {

std::error_code startWorker(std::function<void()> work) {
    // A thread inherits the mask of its maker. The signals of a fault stay open: blocked, they
    // would end the program without the report of a debugger or a sanitizer.
    sigset_t quiet;
    sigset_t before;
    sigfillset(&quiet);
    for (const int fault : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP, SIGSYS})
        sigdelset(&quiet, fault);
    pthread_sigmask(SIG_SETMASK, &quiet, &before);

    std::error_code failure;
    try {
        std::thread(std::move(work)).detach();
    } catch (const std::system_error& error) {
        failure = error.code();
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    return failure;
}

} // namespace platform
