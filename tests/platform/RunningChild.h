#pragma once

#include "ChildTest.h"
#include "platform/ChildProcess.h"

#include <future>
#include <memory>
#include <string>
#include <vector>

// A child of the helper program whose output arrives through a pipe.
class RunningChild {
public:
    explicit RunningChild(std::vector<std::string> arguments, std::string workingDirectory = {}) {
        EXPECT_FALSE(platform::openPipe(pipe_));
        child_ = platform::ChildProcess::make({.program = CHILD_HELPER,
                                               .arguments = std::move(arguments),
                                               .workingDirectory = std::move(workingDirectory),
                                               .output = pipe_.writeEnd.get()});
        EXPECT_FALSE(child_->start([this](platform::ChildExit exit) { exit_.set_value(exit); }));
        pipe_.writeEnd.reset();
    }
    RunningChild(const RunningChild&) = delete;
    RunningChild& operator=(const RunningChild&) = delete;
    ~RunningChild() {
        if (future_.valid())
            reportedExit();
    }

    platform::ChildProcess* operator->() const { return child_.get(); }
    const std::shared_ptr<platform::ChildProcess>& shared() const { return child_; }
    int output() const { return pipe_.readEnd.get(); }

    // The first line, without its end: the child has come as far as to say it.
    std::string line() const {
        std::string text;
        char letter = 0;
        while (::read(output(), &letter, 1) == 1 && letter != '\n')
            text += letter;
        return text;
    }

    std::string everything() const { return readToEnd(output()); }

    // Waits for the report. At most once.
    platform::ChildExit reportedExit() { return future_.get(); }

private:
    platform::Pipe pipe_;
    std::promise<platform::ChildExit> exit_; // a second report would throw
    std::future<platform::ChildExit> future_ = exit_.get_future();
    std::shared_ptr<platform::ChildProcess> child_;
};
