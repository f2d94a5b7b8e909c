#include "platform/QuitSignals.h"

#include "platform/Descriptors.h"

#include <QCoreApplication>
#include <QPointer>
#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace {

int wakeUp = -1; // written to in the signal handler: the only thing that is allowed there

void onSignal(int /*number*/) {
    const int error = errno;
    const char byte = 0;
    // A full pipe has woken the main thread already.
    [[maybe_unused]] const ssize_t written = ::write(wakeUp, &byte, 1);
    errno = error;
}

} // namespace

void platform::takeQuitSignals(std::function<void()> onRequest) {
    static Pipe pipe; // lives as long as the handler may be called
    if (!pipe.readEnd && openPipe(pipe))
        return; // without a pipe the signals keep ending the program
    static QPointer<QSocketNotifier> notifier;
    delete notifier;
    wakeUp = pipe.writeEnd.get();
    ::fcntl(wakeUp, F_SETFL, O_NONBLOCK);
    ::fcntl(pipe.readEnd.get(), F_SETFL, O_NONBLOCK);
    notifier = new QSocketNotifier(pipe.readEnd.get(), QSocketNotifier::Read,
                                   QCoreApplication::instance());
    QObject::connect(notifier, &QSocketNotifier::activated, notifier,
                     [onRequest = std::move(onRequest)] {
                         std::array<char, 64> bytes;
                         while (::read(pipe.readEnd.get(), bytes.data(), bytes.size()) > 0) {
                         }
                         onRequest();
                     });
    struct sigaction action{};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        ::sigaction(number, &action, nullptr);
}
