#include "WaitUntil.h"
#include "platform/Threads.h"

#include <QCoreApplication>

#include <gtest/gtest.h>
#include <signal.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <future>
#include <memory>
#include <thread>
#include <vector>

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace {

TEST(BackgroundTest, work_runs_on_another_thread) {
    std::promise<std::thread::id> ran;
    ASSERT_FALSE(platform::startWorker([&] { ran.set_value(std::this_thread::get_id()); }));
    EXPECT_NE(ran.get_future().get(), std::this_thread::get_id());
}

TEST(BackgroundTest, work_that_blocks_does_not_hold_up_other_work) {
    std::promise<void> release;
    const std::shared_future<void> released = release.get_future().share();
    std::atomic<int> blocked = 0;
    std::atomic<int> through = 0;
    for (int number = 0; number < 16; ++number) {
        ASSERT_FALSE(platform::startWorker([&, released] {
            ++blocked;
            released.wait();
            ++through;
        }));
    }
    EXPECT_TRUE(waitUntil([&] { return blocked == 16; }));
    std::promise<void> ran;
    ASSERT_FALSE(platform::startWorker([&] { ran.set_value(); }));
    ran.get_future().wait();
    EXPECT_EQ(through, 0);
    release.set_value();
    EXPECT_TRUE(waitUntil([&] { return through == 16; }));
}

TEST(BackgroundTest, a_background_thread_takes_no_signal_from_the_main_thread) {
    std::promise<sigset_t> found;
    ASSERT_FALSE(platform::startWorker([&] {
        sigset_t mask;
        pthread_sigmask(SIG_SETMASK, nullptr, &mask);
        found.set_value(mask);
    }));
    const sigset_t mask = found.get_future().get();
    for (const int blocked : {SIGTERM, SIGINT, SIGHUP, SIGCHLD, SIGUSR1})
        EXPECT_EQ(sigismember(&mask, blocked), 1) << blocked;
    EXPECT_EQ(sigismember(&mask, SIGSEGV), 0);
    sigset_t own;
    pthread_sigmask(SIG_SETMASK, nullptr, &own);
    EXPECT_EQ(sigismember(&own, SIGTERM), 0);
}

TEST(BackgroundTest, delayed_work_runs_once_and_never_early) {
    std::atomic<int> runs = 0;
    std::promise<Clock::time_point> ran;
    const auto begin = Clock::now();
    platform::runAfter(30ms, [&] {
        ++runs;
        ran.set_value(Clock::now());
    });
    EXPECT_GE(ran.get_future().get() - begin, 30ms);
    EXPECT_EQ(runs, 1);
}

TEST(BackgroundTest, delayed_work_runs_in_the_order_of_its_times) {
    // All of it waits behind a piece that blocks, and is due hours apart: however slow the machine
    // is, only the times decide.
    std::promise<void> release;
    platform::runAfter(-9h, [released = release.get_future().share()] { released.wait(); });
    std::vector<int> order; // touched by the shared thread alone until last is set
    std::promise<void> last;
    platform::runAfter(-1h, [&] {
        order.push_back(3);
        last.set_value();
    });
    platform::runAfter(-2h, [&] { order.push_back(2); });
    platform::runAfter(-4h, [&] { order.push_back(0); });
    platform::runAfter(-3h, [&] { order.push_back(1); });
    release.set_value();
    last.get_future().wait();
    EXPECT_EQ(order, (std::vector{0, 1, 2, 3}));
}

TEST(BackgroundTest, delayed_work_may_ask_for_more) {
    std::promise<void> ran;
    platform::runAfter(1ms, [&] { platform::runAfter(1ms, [&] { ran.set_value(); }); });
    ran.get_future().wait();
}

TEST(BackgroundTest, delayed_work_holds_what_it_needs_and_lets_go_of_it) {
    auto held = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = held;
    std::promise<void> release;
    const std::shared_future<void> released = release.get_future().share();
    platform::runAfter(1ms, [held = std::move(held), released] { released.wait(); });
    EXPECT_FALSE(watched.expired());
    release.set_value();
    EXPECT_TRUE(waitUntil([&] { return watched.expired(); }));
}

TEST(BackgroundTest, the_end_of_the_application_drops_what_waits_and_waits_for_what_runs) {
    auto waiting = std::make_shared<int>(1);
    const std::weak_ptr<int> watched = waiting;
    std::atomic<bool> done = false;
    {
        int count = 0;
        const QCoreApplication application(count, nullptr);
        platform::runAfter(1h, [waiting = std::move(waiting)] { FAIL(); });
        std::promise<void> began;
        platform::runAfter(0ms, [&] {
            began.set_value();
            std::this_thread::sleep_for(20ms); // work that takes its time
            done = true;
        });
        began.get_future().wait();
    }
    EXPECT_TRUE(done);
    EXPECT_TRUE(watched.expired());

    // After it, work is dropped at once.
    auto late = std::make_shared<int>(1);
    const std::weak_ptr<int> lateWatched = late;
    platform::runAfter(0ms, [late = std::move(late)] { FAIL(); });
    EXPECT_TRUE(lateWatched.expired());

    // And another application makes it run again.
    int count = 0;
    const QCoreApplication application(count, nullptr);
    std::promise<void> ran;
    platform::runAfter(0ms, [&] { ran.set_value(); });
    ran.get_future().wait();
}

TEST(BackgroundTest, what_waits_does_not_delay_the_end_of_the_program) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            platform::runAfter(1h, [] { std::_Exit(1); });
            std::exit(0);
        },
        testing::ExitedWithCode(0), "");
}

} // namespace
