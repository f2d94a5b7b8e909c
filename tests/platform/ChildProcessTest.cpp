#include "platform/ChildProcess.h"

#include "ChildTest.h"
#include "RunningChild.h"
#include "WaitUntil.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <sstream>
#include <thread>

using platform::ChildExit;
using platform::ChildProcess;

extern char** environ;

namespace {

class ChildProcessTest : public ChildTest {};

std::vector<std::string> splitAtNul(const std::string& text) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, '\0');)
        parts.push_back(part);
    return parts;
}

bool isReadable(int descriptor) {
    pollfd source{descriptor, POLLIN, 0};
    return ::poll(&source, 1, 0) == 1;
}

TEST_F(ChildProcessTest, an_exit_is_reported_as_it_was) {
    struct Row {
        std::vector<std::string> arguments;
        ChildExit exit;
        bool succeeded;
    };
    const Row rows[] = {
        {{"exit", "0"}, {ChildExit::Kind::Exited, 0}, true},
        {{"exit", "7"}, {ChildExit::Kind::Exited, 7}, false},
        {{"exit", "255"}, {ChildExit::Kind::Exited, 255}, false},
        {{"crash"}, {ChildExit::Kind::Signalled, SIGSEGV}, false},
        {{"die-by", "9"}, {ChildExit::Kind::Signalled, SIGKILL}, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.arguments.front());
        RunningChild child(row.arguments);
        const ChildExit exit = child.reportedExit();
        EXPECT_EQ(exit, row.exit);
        EXPECT_EQ(exit.succeeded(), row.succeeded);
        EXPECT_EQ(child->waitForExit(), row.exit);
    }
}

TEST_F(ChildProcessTest, a_failed_start_says_why_and_leaves_nothing) {
    struct Row {
        const char* name;
        platform::ChildCommand command;
        std::errc reason;
    };
    const std::string plainFile = "/etc/passwd";
    const Row rows[] = {
        {"missing program", {.program = "/nowhere/tool"}, std::errc::no_such_file_or_directory},
        {"no program", {.program = ""}, std::errc::no_such_file_or_directory},
        {"not searched for", {.program = "true"}, std::errc::no_such_file_or_directory},
        {"not executable", {.program = plainFile}, std::errc::permission_denied},
        {"a folder", {.program = "/tmp"}, std::errc::permission_denied},
        {"below a file", {.program = plainFile + "/tool"}, std::errc::not_a_directory},
        {"missing folder to work in",
         {.program = CHILD_HELPER, .arguments = {"exit", "0"}, .workingDirectory = "/nowhere"},
         std::errc::no_such_file_or_directory},
        {"a file to work in",
         {.program = CHILD_HELPER, .arguments = {"exit", "0"}, .workingDirectory = plainFile},
         std::errc::not_a_directory},
        {"a closed descriptor",
         {.program = CHILD_HELPER, .arguments = {"exit", "0"}, .output = 12345},
         std::errc::bad_file_descriptor},
        {"NUL in the program",
         {.program = CHILD_HELPER + std::string("\0x", 2)},
         std::errc::invalid_argument},
        {"NUL in an argument",
         {.program = CHILD_HELPER, .arguments = {std::string("exit\0", 5)}},
         std::errc::invalid_argument},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        std::atomic<int> reports = 0;
        const int before = openDescriptors();
        {
            const auto child = ChildProcess::make(row.command);
            EXPECT_EQ(child->start([&](ChildExit) { ++reports; }), row.reason);
            EXPECT_FALSE(child->isRunning());
            EXPECT_EQ(child->waitForExit().kind, ChildExit::Kind::Unknown);
            child->terminate();
            child->kill();
        }
        // Less when the thread of a former test's child has just let go of it.
        EXPECT_LE(openDescriptors(), before);
        EXPECT_EQ(reports, 0);
        siginfo_t ignored{};
        EXPECT_EQ(::waitid(P_ALL, 0, &ignored, WEXITED | WNOHANG | WNOWAIT), -1)
            << "a process was left";
    }
}

TEST_F(ChildProcessTest, a_second_start_is_refused_and_changes_nothing) {
    RunningChild child({"exit", "4"});
    std::atomic<int> reports = 0;
    EXPECT_EQ(child->start([&](ChildExit) { ++reports; }), std::errc::operation_not_permitted);
    EXPECT_EQ(child.reportedExit().value, 4);
    EXPECT_EQ(child->start([&](ChildExit) { ++reports; }), std::errc::operation_not_permitted);
    EXPECT_EQ(reports, 0);
}

#ifdef __linux__
TEST_F(ChildProcessTest, a_start_beside_the_main_thread_is_refused) {
    // The kernel would kill the child with the thread.
    std::thread([] {
        const auto child = ChildProcess::make({.program = CHILD_HELPER, .arguments = {"hang"}});
        EXPECT_EQ(child->start({}), std::errc::operation_not_permitted);
    }).join();
}
#endif

TEST_F(ChildProcessTest, arguments_arrive_to_the_letter) {
    const std::vector<std::string> arguments = {"",           " ",      "two words", "\"quoted\"",
                                                "$HOME",      "`id`",   "a;b|c>d",   "*",
                                                "line\nline", "Zürich", "\\",        "\xff\xfe"};
    std::vector<std::string> command = {"print-arguments"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    RunningChild child(command);
    EXPECT_EQ(splitAtNul(child.everything()), arguments);
}

TEST_F(ChildProcessTest, standard_input_is_empty) {
    RunningChild child({"count-input"});
    EXPECT_EQ(child.everything(), "0");
}

TEST_F(ChildProcessTest, output_and_error_go_where_they_are_sent) {
    platform::Pipe pipe;
    ASSERT_FALSE(platform::openPipe(pipe));
    const auto toError = ChildProcess::make(
        {.program = CHILD_HELPER, .arguments = {"print-error"}, .error = pipe.writeEnd.get()});
    const auto toNothing =
        ChildProcess::make({.program = CHILD_HELPER, .arguments = {"print-bytes", "100000"}});
    const auto toBoth = ChildProcess::make({.program = CHILD_HELPER,
                                            .arguments = {"print-text-and-exit", " both", "0"},
                                            .output = pipe.writeEnd.get(),
                                            .error = pipe.writeEnd.get()});
    for (const auto& child : {toError, toNothing, toBoth}) {
        ASSERT_FALSE(child->start({}));
        EXPECT_TRUE(child->waitForExit().succeeded());
    }
    pipe.writeEnd.reset();
    EXPECT_EQ(readToEnd(pipe.readEnd.get()), "to error both");
}

TEST_F(ChildProcessTest, the_child_has_the_programs_environment) {
    std::vector<std::string> expected;
    for (char** variable = environ; *variable != nullptr; ++variable)
        expected.emplace_back(*variable);
    RunningChild child({"print-environment"});
    std::vector<std::string> found = splitAtNul(child.everything());
    std::sort(expected.begin(), expected.end());
    std::sort(found.begin(), found.end());
    EXPECT_EQ(found, expected);
}

TEST_F(ChildProcessTest, the_working_directory_is_set_in_the_child_alone) {
    const std::filesystem::path before = std::filesystem::current_path();
    RunningChild elsewhere({"print-folder"}, "/usr");
    EXPECT_EQ(elsewhere.everything(), "/usr");
    EXPECT_EQ(std::filesystem::current_path(), before);
    RunningChild here({"print-folder"});
    EXPECT_EQ(here.everything(), before.string());
}

TEST_F(ChildProcessTest, the_child_leads_a_group_of_its_own) {
    RunningChild child({"print-group"});
    int id = 0;
    int group = 0;
    std::istringstream(child.everything()) >> id >> group;
    EXPECT_GT(id, 1);
    EXPECT_EQ(group, id);
    EXPECT_NE(group, ::getpgrp());
}

TEST_F(ChildProcessTest, the_child_has_default_signals) {
    // What a program that embeds others may well have set.
    sigset_t blocked;
    sigset_t maskBefore;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR1);
    sigaddset(&blocked, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &maskBefore);
    struct sigaction ignoring{};
    struct sigaction handling{};
    struct sigaction pipeBefore{};
    struct sigaction userBefore{};
    ignoring.sa_handler = SIG_IGN;
    handling.sa_handler = [](int) {};
    ::sigaction(SIGPIPE, &ignoring, &pipeBefore);
    ::sigaction(SIGUSR2, &handling, &userBefore);

    RunningChild child({"print-signals"});
    EXPECT_EQ(child.everything(), "");

    struct sigaction pipeAfter{};
    struct sigaction userAfter{};
    sigset_t maskAfter;
    ::sigaction(SIGPIPE, &pipeBefore, &pipeAfter);
    ::sigaction(SIGUSR2, &userBefore, &userAfter);
    ::pthread_sigmask(SIG_SETMASK, &maskBefore, &maskAfter);
    EXPECT_EQ(pipeAfter.sa_handler, SIG_IGN) << "the program's own setting was lost";
    EXPECT_EQ(userAfter.sa_handler, handling.sa_handler);
    EXPECT_EQ(sigismember(&maskAfter, SIGUSR1), 1);
    EXPECT_EQ(sigismember(&maskAfter, SIGINT), 0);
}

TEST_F(ChildProcessTest, an_exit_is_known_although_SIGCHLD_was_ignored) {
    struct sigaction ignoring{};
    struct sigaction before{};
    ignoring.sa_handler = SIG_IGN;
    ::sigaction(SIGCHLD, &ignoring, &before);
    RunningChild child({"exit", "7"});
    EXPECT_EQ(child.reportedExit(), (ChildExit{ChildExit::Kind::Exited, 7}));
    ::sigaction(SIGCHLD, &before, nullptr);
}

TEST_F(ChildProcessTest, a_status_that_somebody_else_took_is_unknown) {
    RunningChild child({"hang"});
    const pid_t id = std::stoi(child.line());
    // Reaps under the owner's hands; which of the two is first is the kernel's choice.
    std::thread thief([&] {
        int status = 0;
        ::waitpid(id, &status, 0);
    });
    ::kill(id, SIGKILL);
    thief.join();
    const ChildExit exit = child.reportedExit();
    EXPECT_FALSE(exit.succeeded());
    EXPECT_NE(exit.kind, ChildExit::Kind::Exited);
    EXPECT_FALSE(child->isRunning());
}

TEST_F(ChildProcessTest, no_descriptor_leaks_into_a_child) {
    // A library's descriptor that is not close-on-exec.
    const platform::UniqueFd foreign(::open("/dev/null", O_RDONLY));
    ASSERT_TRUE(foreign);
    platform::Pipe own;
    ASSERT_FALSE(platform::openPipe(own));
    RunningChild child({"print-descriptors"});
    EXPECT_EQ(child.everything(), "0 1 2 ");
}

// What a child of the helper program that is started without ChildProcess has open: the standard
// descriptors and what this program has inherited itself.
std::string descriptorsOfPlainChild() {
    platform::Pipe pipe;
    EXPECT_FALSE(platform::openPipe(pipe));
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipe.writeEnd.get(), STDOUT_FILENO);
    std::string program = CHILD_HELPER;
    std::string mode = "print-descriptors";
    char* arguments[] = {program.data(), mode.data(), nullptr};
    pid_t id = 0;
    EXPECT_EQ(::posix_spawn(&id, CHILD_HELPER, &actions, nullptr, arguments, environ), 0);
    posix_spawn_file_actions_destroy(&actions);
    pipe.writeEnd.reset();
    std::string descriptors = readToEnd(pipe.readEnd.get());
    ::waitpid(id, nullptr, 0);
    return descriptors;
}

TEST_F(ChildProcessTest, no_descriptor_leaks_while_other_threads_start_children) {
    const std::string inherited = descriptorsOfPlainChild();
    std::atomic<bool> enough = false;
    std::atomic<int> leaks = 0;
    const auto startOthers = [&] {
        while (!enough)
            leaks += descriptorsOfPlainChild() != inherited;
    };
    std::thread first(startOthers);
    std::thread second(startOthers);
    for (int round = 0; round < 200; ++round) {
        RunningChild child({"print-descriptors"});
        leaks += child.everything() != "0 1 2 ";
    }
    enough = true;
    first.join();
    second.join();
    EXPECT_EQ(leaks, 0);
}

TEST_F(ChildProcessTest, the_program_keeps_no_descriptor_of_a_child_that_is_gone) {
    const int before = openDescriptors();
    for (int round = 0; round < 100; ++round)
        RunningChild({"exit", "0"}).everything();
    // The last thread lets go of its child just after it has reported.
    EXPECT_TRUE(waitUntil([&] { return openDescriptors() <= before; }));
}

TEST_F(ChildProcessTest, a_child_starts_while_the_standard_descriptors_are_closed) {
    const auto parent = ChildProcess::make(
        {.program = CHILD_PARENT, .arguments = {"closed-standard", CHILD_HELPER}});
    ASSERT_FALSE(parent->start({}));
    EXPECT_EQ(parent->waitForExit(), (ChildExit{ChildExit::Kind::Exited, 0}));
}

TEST_F(ChildProcessTest, the_report_comes_once_from_another_thread_when_the_child_is_gone) {
    struct Seen {
        std::atomic<int> reports = 0;
        std::atomic<bool> ran = true;
        std::atomic<bool> wasReaped = false;
        std::thread::id thread;
    } seen;
    std::promise<void> done;
    const auto child = ChildProcess::make({.program = CHILD_HELPER, .arguments = {"exit", "0"}});
    ASSERT_FALSE(child->start([&, raw = child.get()](ChildExit) {
        ++seen.reports;
        seen.ran = raw->isRunning();
        siginfo_t ignored{};
        seen.wasReaped = ::waitid(P_ALL, 0, &ignored, WEXITED | WNOHANG | WNOWAIT) != 0;
        seen.thread = std::this_thread::get_id();
        done.set_value();
    }));
    done.get_future().wait();
    EXPECT_FALSE(seen.ran);
    EXPECT_TRUE(seen.wasReaped);
    EXPECT_NE(seen.thread, std::this_thread::get_id());
    EXPECT_TRUE(waitUntil([&] { return child.use_count() == 1; })) << "the thread holds its child";
    EXPECT_EQ(seen.reports, 1);
}

TEST_F(ChildProcessTest, a_child_lives_on_without_its_owner_until_it_has_reported) {
    std::promise<ChildExit> reported;
    ASSERT_FALSE(ChildProcess::make({.program = CHILD_HELPER, .arguments = {"exit", "5"}})
                     ->start([&](ChildExit exit) { reported.set_value(exit); }));
    EXPECT_EQ(reported.get_future().get().value, 5);
}

TEST_F(ChildProcessTest, several_threads_may_wait_for_one_child) {
    RunningChild child({"hang"});
    std::atomic<int> right = 0;
    std::vector<std::thread> waiting;
    waiting.reserve(4);
    for (int number = 0; number < 4; ++number) {
        waiting.emplace_back([&] {
            right += child->waitForExit() == ChildExit{ChildExit::Kind::Signalled, SIGTERM};
        });
    }
    child->terminate();
    for (std::thread& thread : waiting)
        thread.join();
    EXPECT_EQ(right, 4);
}

TEST_F(ChildProcessTest, the_exit_descriptor_becomes_readable_at_the_end_and_stays_so) {
    RunningChild child({"exit-on-term"});
    ASSERT_EQ(child.line(), "ready");
    EXPECT_FALSE(isReadable(child->exitDescriptor()));
    child->terminate();
    EXPECT_EQ(child.reportedExit().value, 3);
    EXPECT_TRUE(isReadable(child->exitDescriptor()));
    EXPECT_TRUE(isReadable(child->exitDescriptor()));
}

#ifdef __linux__
TEST_F(ChildProcessTest, a_child_dies_with_the_program_that_started_it) {
    platform::Pipe pipe;
    ASSERT_FALSE(platform::openPipe(pipe));
    const auto program = ChildProcess::make({.program = CHILD_PARENT,
                                             .arguments = {"keep", CHILD_HELPER},
                                             .output = pipe.writeEnd.get()});
    ASSERT_FALSE(program->start({}));
    pipe.writeEnd.reset();
    char line[64] = {};
    ASSERT_GT(::read(pipe.readEnd.get(), line, sizeof line - 1), 0);
    int programId = 0;
    int childId = 0;
    std::istringstream(line) >> programId >> childId;
    ASSERT_EQ(livingDescendants().size(), 2U);
    ASSERT_EQ(::getpgid(childId), childId) << "not reached by a signal to the program's group";

    ::kill(programId, SIGKILL); // no chance to clean up
    EXPECT_EQ(program->waitForExit().value, SIGKILL);
    EXPECT_TRUE(waitUntil([] { return livingDescendants().empty(); }));
}
#endif

} // namespace
