#include "platform/QuitSignals.h"

#include "RunningChild.h"
#include "TurnUntil.h"

#include <QCoreApplication>
#include <QThread>

#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>

#include <cerrno>
#include <csignal>
#include <thread>

namespace {

// Counts what arrives during each test.
class QuitSignalsTest : public ChildTest {
protected:
    void SetUp() override {
        ChildTest::SetUp();
        platform::takeQuitSignals([] {
            ++requests;
            onMainThread = onMainThread && QThread::currentThread() == qApp->thread();
        });
        requests = 0;
        onMainThread = true;
    }

    static void turn() { QCoreApplication::processEvents(); }

    static bool turnUntilRequested() {
        return turnUntil([] { return requests > 0; });
    }

    inline static int requests = 0;
    inline static bool onMainThread = true;
};

TEST_F(QuitSignalsTest, each_of_the_three_signals_is_a_request) {
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        SCOPED_TRACE(number);
        requests = 0;
        std::raise(number);
        EXPECT_EQ(requests, 0) << "never inside the signal";
        EXPECT_TRUE(turnUntilRequested());
        turn();
        EXPECT_EQ(requests, 1);
        EXPECT_TRUE(onMainThread);
    }
}

TEST_F(QuitSignalsTest, a_signal_wakes_a_sleeping_event_loop) {
    std::thread sender([main = pthread_self()] { pthread_kill(main, SIGTERM); });
    while (requests == 0)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    sender.join();
    EXPECT_TRUE(onMainThread);
}

TEST_F(QuitSignalsTest, a_signal_that_another_thread_takes_is_told_on_the_main_thread) {
    std::thread([] { std::raise(SIGTERM); }).join();
    EXPECT_TRUE(turnUntilRequested());
    EXPECT_TRUE(onMainThread);
}

// More than any pipe holds.
TEST_F(QuitSignalsTest, a_flood_of_signals_blocks_nobody_and_loses_no_request) {
    for (int count = 0; count < 100000; ++count)
        std::raise(SIGTERM);
    EXPECT_TRUE(turnUntilRequested());
    turn();
    requests = 0;
    turn();
    EXPECT_EQ(requests, 0) << "nothing is left over";
    std::raise(SIGTERM);
    EXPECT_TRUE(turnUntilRequested());
}

TEST_F(QuitSignalsTest, a_signal_keeps_the_error_number_of_what_it_interrupts) {
    for (int count = 0; count < 100000; ++count) {
        errno = EDOM;
        std::raise(SIGTERM); // the pipe is full long before the end: the write fails
        ASSERT_EQ(errno, EDOM);
    }
    EXPECT_TRUE(turnUntilRequested());
}

TEST_F(QuitSignalsTest, a_child_is_ended_by_these_signals_as_ever) {
    RunningChild listing({"print-signals"});
    EXPECT_EQ(readToEnd(listing.output()), "");
    EXPECT_TRUE(listing.reportedExit().succeeded());
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        RunningChild child({"die-by", std::to_string(number)});
        EXPECT_EQ(child.reportedExit(),
                  (platform::ChildExit{platform::ChildExit::Kind::Signalled, number}));
    }
    turn();
    EXPECT_EQ(requests, 0) << "a child's end is none of the program's";
}

TEST_F(QuitSignalsTest, the_last_one_who_takes_them_is_asked) {
    int later = 0;
    std::raise(SIGTERM); // on its way meanwhile
    platform::takeQuitSignals([&] { ++later; });
    EXPECT_TRUE(turnUntil([&] { return later > 0; }));
    EXPECT_EQ(later, 1);
    EXPECT_EQ(requests, 0);
    platform::takeQuitSignals([] {});
}

// Tests of this name run first, while the signals still are as the program found them.
TEST(QuitSignalsDeathTest, without_descriptors_the_signals_keep_ending_the_program) {
    EXPECT_EXIT(
        {
            const rlimit none = {};
            setrlimit(RLIMIT_NOFILE, &none);
            platform::takeQuitSignals([] {});
            std::raise(SIGTERM);
            std::exit(0);
        },
        testing::KilledBySignal(SIGTERM), "");
}

} // namespace
