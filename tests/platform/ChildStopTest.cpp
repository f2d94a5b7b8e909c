// Stopping a child: terminate() and kill() of ChildProcess, and stopChild().

#include "ChildTest.h"
#include "RunningChild.h"
#include "WaitUntil.h"
#include "platform/ChildProcess.h"
#include "platform/Threads.h"

#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <thread>

using namespace std::chrono_literals;
using platform::ChildExit;
using platform::ChildProcess;

extern char** environ;

namespace {

class ChildStopTest : public ChildTest {};

// One that has come as far as its mode says.
struct ReadyChild : RunningChild {
    explicit ReadyChild(const char* mode) : RunningChild({mode}) { EXPECT_EQ(line(), "ready"); }
};

constexpr ChildExit terminated{ChildExit::Kind::Signalled, SIGTERM};
constexpr ChildExit killed{ChildExit::Kind::Signalled, SIGKILL};

TEST_F(ChildStopTest, a_request_to_end_reaches_the_child) {
    RunningChild plain({"hang"});
    ReadyChild handling("exit-on-term");
    plain->terminate();
    handling->terminate();
    EXPECT_EQ(plain.reportedExit(), terminated);
    EXPECT_EQ(handling.reportedExit(), (ChildExit{ChildExit::Kind::Exited, 3}));
}

TEST_F(ChildStopTest, a_kill_ends_a_child_that_resists_a_request) {
    ReadyChild child("ignore-term");
    child->terminate();
    EXPECT_TRUE(child->isRunning());
    child->kill();
    EXPECT_EQ(child.reportedExit(), killed);
}

TEST_F(ChildStopTest, a_kill_ends_the_whole_group) {
    ReadyChild child("leave-behind");
    ASSERT_EQ(livingDescendants().size(), 2U);
    child->kill();
    EXPECT_EQ(child.reportedExit(), killed);
    EXPECT_TRUE(waitUntil([] { return livingDescendants().empty(); }));
}

TEST_F(ChildStopTest, what_a_stopped_child_leaves_behind_is_killed) {
    ReadyChild child("leave-behind"); // its own child ignores SIGTERM
    ASSERT_EQ(livingDescendants().size(), 2U);
    child->terminate();
    EXPECT_EQ(child.reportedExit(), terminated);
    EXPECT_TRUE(waitUntil([] { return livingDescendants().empty(); }));
}

TEST_F(ChildStopTest, what_a_child_leaves_behind_that_ended_by_itself_is_let_live) {
    RunningChild child({"leave-behind-and-exit"});
    EXPECT_TRUE(child.reportedExit().succeeded());
    child->terminate();
    child->kill();
    const std::vector<int> left = livingDescendants();
    ASSERT_EQ(left.size(), 1U);
    ::kill(left.front(), SIGKILL);
}

TEST_F(ChildStopTest, stopping_what_has_ended_or_never_ran_does_nothing) {
    RunningChild ended({"exit", "6"});
    EXPECT_EQ(ended.reportedExit().value, 6);
    ended->terminate();
    ended->kill();
    platform::stopChild(ended.shared(), 0ms);
    EXPECT_EQ(ended->waitForExit().value, 6);

    const auto neverStarted = ChildProcess::make({.program = CHILD_HELPER, .arguments = {"hang"}});
    neverStarted->terminate();
    neverStarted->kill();
    platform::stopChild(neverStarted, 0ms);
    EXPECT_FALSE(neverStarted->isRunning());

    platform::stopChild(nullptr);
}

#ifdef __linux__
TEST_F(ChildStopTest, no_signal_reaches_a_stranger_with_the_same_number) {
    RunningChild child({"hang"});
    const pid_t id = std::stoi(child.line());
    child->terminate();
    EXPECT_EQ(child.reportedExit(), terminated);

    // Asks the kernel to give the number away again, to a process that leads a group as well.
    posix_spawnattr_t ownGroup;
    posix_spawnattr_init(&ownGroup);
    posix_spawnattr_setflags(&ownGroup, POSIX_SPAWN_SETPGROUP);
    std::string program = CHILD_HELPER;
    std::string mode = "hang";
    char* arguments[] = {program.data(), mode.data(), nullptr};
    pid_t stranger = 0;
    for (int attempt = 0; attempt < 50 && stranger != id; ++attempt) {
        if (!(std::ofstream("/proc/sys/kernel/ns_last_pid") << id - 1).flush())
            GTEST_SKIP() << "only the administrator can choose the next process number";
        ASSERT_EQ(::posix_spawn(&stranger, CHILD_HELPER, nullptr, &ownGroup, arguments, environ),
                  0);
        if (stranger != id) {
            ::kill(stranger, SIGKILL);
            ::waitpid(stranger, nullptr, 0);
        }
    }
    posix_spawnattr_destroy(&ownGroup);
    ASSERT_EQ(stranger, id);

    child->terminate();
    child->kill();
    platform::stopChild(child.shared(), 0ms);
    // The signal of ours that ends it shows that no other one was first.
    ::kill(stranger, SIGUSR1);
    int status = 0;
    ASSERT_EQ(::waitpid(stranger, &status, 0), stranger);
    EXPECT_EQ(WTERMSIG(status), SIGUSR1);
}
#endif

TEST_F(ChildStopTest, a_stop_asks_first) {
    ReadyChild child("exit-on-term");
    platform::stopChild(child.shared(), 1h);
    EXPECT_EQ(child.reportedExit(), (ChildExit{ChildExit::Kind::Exited, 3}));
}

TEST_F(ChildStopTest, a_stop_blocks_nobody_while_the_child_resists) {
    ReadyChild child("ignore-term");
    platform::stopChild(child.shared(), 1h);
    EXPECT_TRUE(child->isRunning());
    child->kill();
    EXPECT_EQ(child.reportedExit(), killed);
}

TEST_F(ChildStopTest, a_stop_kills_a_child_that_resists_after_the_patience) {
    ReadyChild child("ignore-term");
    const auto begin = std::chrono::steady_clock::now();
    platform::stopChild(child.shared());
    EXPECT_EQ(child.reportedExit(), killed);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, platform::stopPatience);
}

TEST_F(ChildStopTest, a_child_that_has_ended_is_not_kept_for_the_rest_of_the_patience) {
    std::weak_ptr<platform::ChildProcess> ended;
    {
        ReadyChild child("exit-on-term");
        ended = child.shared();
        platform::stopChild(child.shared(), 1h);
        EXPECT_EQ(child.reportedExit().value, 3);
    }
    EXPECT_TRUE(waitUntil([&] { return ended.expired(); }, 5s));
}

TEST_F(ChildStopTest, two_stops_are_one) {
    ReadyChild child("ignore-term");
    platform::stopChild(child.shared(), 20ms);
    platform::stopChild(child.shared(), 30ms);
    EXPECT_EQ(child.reportedExit(), killed);
}

TEST_F(ChildStopTest, any_number_of_threads_may_stop_one_child) {
    for (int round = 0; round < 20; ++round) {
        ReadyChild child("leave-behind");
        std::vector<std::thread> stopping;
        stopping.reserve(4);
        for (int number = 0; number < 4; ++number) {
            stopping.emplace_back([&, number] {
                while (child->isRunning())
                    number % 2 == 0 ? child->terminate() : child->kill();
            });
        }
        for (std::thread& thread : stopping)
            thread.join();
        EXPECT_EQ(child.reportedExit().kind, ChildExit::Kind::Signalled);
    }
}

} // namespace
