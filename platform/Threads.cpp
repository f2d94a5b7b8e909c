#include "platform/Threads.h"

#include "platform/Descriptors.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <condition_variable>
#include <csignal>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace platform {
namespace {

using Clock = std::chrono::steady_clock;

// Delayed work by the time when it is due. Never destroyed: its thread may be inside at any time
// while the program ends.
class Timer {
public:
    static Timer& shared() {
        static Timer& timer = *new Timer;
        return timer;
    }

    void open() {
        const std::lock_guard lock(mutex_);
        closed_ = false;
    }

    // Drops what waits, and waits for the piece that has begun: the program is about to destroy
    // what it uses. That is short, because such work does not block.
    void close() {
        std::multimap<Clock::time_point, std::function<void()>> dropped;
        std::unique_lock lock(mutex_);
        closed_ = true;
        dropped.swap(waiting_);
        changed_.wait(lock, [this] { return !working_; });
        lock.unlock(); // dropped is destroyed without the lock: its owners may call back
    }

    void add(Clock::time_point due, std::function<void()> work) {
        const std::lock_guard lock(mutex_);
        if (closed_)
            return;
        waiting_.emplace(due, std::move(work));
        // If there is no thread to be had now, the next call tries again.
        if (!threadRuns_)
            threadRuns_ = !startWorker([this] { run(); });
        changed_.notify_all();
    }

private:
    Timer() = default;

    void run() {
        std::unique_lock lock(mutex_);
        for (;;) {
            if (waiting_.empty()) {
                changed_.wait(lock);
                continue;
            }
            const Clock::time_point due = waiting_.begin()->first;
            if (Clock::now() < due) {
                changed_.wait_until(lock, due);
                continue;
            }
            workOnFirst(lock);
        }
    }

    void workOnFirst(std::unique_lock<std::mutex>& lock) {
        std::function<void()> work = std::move(waiting_.begin()->second);
        waiting_.erase(waiting_.begin());
        working_ = true;
        lock.unlock();
        work();
        work = nullptr;
        lock.lock();
        working_ = false;
        changed_.notify_all();
    }

    std::mutex mutex_; // guards everything below
    std::condition_variable changed_;
    std::multimap<Clock::time_point, std::function<void()>> waiting_;
    bool threadRuns_ = false;
    bool working_ = false; // a piece of work is running on the thread
    bool closed_ = false;
};

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
        uninterrupted([this] { return ::write(wake_.writeEnd.get(), "", 1); });
    }

    // Never blocks: the byte is there while anything waits.
    void rest() {
        char byte = 0;
        // NOLINTNEXTLINE(clang-analyzer-unix.BlockInCriticalSection)
        uninterrupted([&] { return ::read(wake_.readEnd.get(), &byte, 1); });
    }

    std::unique_ptr<QSocketNotifier> notifier_; // main thread only

    std::mutex mutex_; // guards everything below
    std::deque<std::function<void()>> waiting_;
    Pipe wake_;
    State state_ = State::BeforeApplication;
};

void followApplication() {
    MainQueue::shared().open();
    Timer::shared().open();
    qAddPostRoutine([] {
        Timer::shared().close();
        MainQueue::shared().close();
    });
}

Q_COREAPP_STARTUP_FUNCTION(followApplication)

} // namespace

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

void runAfter(std::chrono::milliseconds delay, std::function<void()> work) {
    Timer::shared().add(Clock::now() + delay, std::move(work));
}

void postToMain(std::function<void()> work) {
    MainQueue::shared().post(std::move(work));
}

} // namespace platform
