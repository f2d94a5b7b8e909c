#include "platform/MainQueue.h"

#include "platform/Pipe.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <unistd.h>

#include <cerrno>
#include <deque>
#include <memory>
#include <mutex>
#include <utility>

namespace platform {
namespace {

// A queue of our own, with a pipe to wake the event loop, instead of posted Qt events: their
// receiver would have to outlive every thread that posts, and the thread sanitizer cannot see into
// Qt's own synchronisation.
//
// Invariant: while there is an application, the pipe holds one byte if anything waits, else none.
// Never destroyed: threads post while the program ends.
class MainQueue {
public:
    static MainQueue& shared() {
        static MainQueue& queue = *new MainQueue;
        return queue;
    }

    void open() {
        const std::lock_guard lock(mutex_);
        if (const std::error_code failure = openPipe(wake_))
            qFatal("The main queue could not be made: %s", failure.message().c_str());
        state_ = State::Open;
        notifier_ = std::make_unique<QSocketNotifier>(wake_.readEnd.get(), QSocketNotifier::Read);
        QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                         [this] { runFirst(); });
        if (!waiting_.empty())
            wake();
    }

    void close() {
        std::deque<std::function<void()>> dropped;
        notifier_.reset();
        const std::lock_guard lock(mutex_);
        state_ = State::Closed;
        wake_ = {};
        dropped.swap(waiting_);
        // dropped outlives the lock: what its closures own may post when it is destroyed.
    }

    void post(std::function<void()> work) {
        const std::lock_guard lock(mutex_);
        if (state_ == State::Closed)
            return; // work is destroyed by the caller's frame, after the lock
        waiting_.push_back(std::move(work));
        if (state_ == State::Open && waiting_.size() == 1)
            wake();
    }

private:
    enum class State { BeforeApplication, Open, Closed };

    MainQueue() = default;

    // One only: a second piece taken here would be stuck while the first one shows a dialog. The
    // byte that is left in the pipe brings the event loop back for it.
    void runFirst() {
        std::function<void()> work;
        {
            const std::lock_guard lock(mutex_);
            if (waiting_.empty())
                return;
            work = std::move(waiting_.front());
            waiting_.pop_front();
            if (waiting_.empty())
                rest();
        }
        work();
    }

    void wake() {
        while (::write(wake_.writeEnd.get(), "", 1) < 0 && errno == EINTR) {
        }
    }

    // Never blocks: the byte is there while anything waits.
    void rest() {
        char byte = 0;
        // NOLINTNEXTLINE(clang-analyzer-unix.BlockInCriticalSection)
        while (::read(wake_.readEnd.get(), &byte, 1) < 0 && errno == EINTR) {
        }
    }

    std::unique_ptr<QSocketNotifier> notifier_; // main thread only

    std::mutex mutex_; // guards everything below
    std::deque<std::function<void()>> waiting_;
    Pipe wake_;
    State state_ = State::BeforeApplication;
};

void followApplication() {
    MainQueue::shared().open();
    qAddPostRoutine([] { MainQueue::shared().close(); });
}

Q_COREAPP_STARTUP_FUNCTION(followApplication)

} // namespace

void postToMain(std::function<void()> work) {
    MainQueue::shared().post(std::move(work));
}

} // namespace platform
