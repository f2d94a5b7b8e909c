#include "jobs/JobRunner.h"

#include "ChildTest.h"
#include "ScriptedPlan.h"
#include "TurnUntil.h"

#include <QCoreApplication>

#include <optional>

namespace {

class JobRunnerTest : public ChildTest, protected ScriptedPlan {
protected:
    void ended(JobKind kind, const JobReport& report) {
        EXPECT_FALSE(runner_->isRunning()) << "told in the state that then holds";
        kinds_.push_back(kind);
        outcomes_.push_back(report.outcome);
    }

    bool awaitEnd() {
        return turnUntil([&] { return !runner_->isRunning(); });
    }

    std::vector<JobKind> kinds_;
    std::vector<JobOutcome> outcomes_;
    std::unique_ptr<JobRunner> runner_ = std::make_unique<JobRunner>(
        [this](JobKind kind, const JobReport& report) { ended(kind, report); });
};

TEST_F(JobRunnerTest, a_new_one_is_idle_and_a_stop_does_nothing) {
    runner_->stop();
    EXPECT_FALSE(runner_->isRunning());
    EXPECT_FALSE(runner_->isStopping());
    EXPECT_FALSE(runner_->finished());
}

TEST_F(JobRunnerTest, a_package_that_was_made_is_the_last_one) {
    JobPlan route = plan(makePackage);
    route.kind = JobKind::Route;
    ASSERT_FALSE(runner_->start(std::move(route)));
    EXPECT_TRUE(runner_->isRunning());
    EXPECT_FALSE(runner_->isStopping());
    ASSERT_TRUE(awaitEnd());
    EXPECT_EQ(kinds_, std::vector{JobKind::Route});
    EXPECT_EQ(outcomes_, std::vector{JobOutcome::Succeeded});
    ASSERT_TRUE(runner_->finished());
    EXPECT_EQ(runner_->finished()->directory, output_);
    EXPECT_EQ(runner_->finished()->filename, u"origin.nxd"_s);
}

TEST_F(JobRunnerTest, a_package_without_its_pointer_is_one) {
    QDir().mkpath(pointer_ + u"/in the way"_s);
    ASSERT_FALSE(runner_->start(plan(makePackage)));
    ASSERT_TRUE(awaitEnd());
    EXPECT_EQ(outcomes_, std::vector{JobOutcome::SucceededWithoutPointer});
    EXPECT_TRUE(runner_->finished());
}

TEST_F(JobRunnerTest, every_start_forgets_the_package_of_before) {
    for (const bool starts : {true, false}) {
        QDir(output_).removeRecursively();
        ASSERT_FALSE(runner_->start(plan(makePackage)));
        ASSERT_TRUE(awaitEnd());
        ASSERT_TRUE(runner_->finished());
        JobPlan next = plan("exit 1");
        if (!starts)
            next.tool = root_.filePath(u"none"_s);
        EXPECT_EQ(!runner_->start(std::move(next)), starts);
        EXPECT_EQ(runner_->isRunning(), starts);
        EXPECT_FALSE(runner_->finished());
        ASSERT_TRUE(awaitEnd());
        EXPECT_FALSE(runner_->finished()) << "a failed job makes no package";
    }
}

TEST_F(JobRunnerTest, a_stop_is_told_once_when_the_tool_has_ended) {
    ASSERT_FALSE(runner_->start(plan("exec sleep 1000")));
    runner_->stop();
    runner_->stop();
    EXPECT_TRUE(runner_->isRunning());
    EXPECT_TRUE(runner_->isStopping());
    ASSERT_TRUE(awaitEnd());
    EXPECT_FALSE(runner_->isStopping());
    QCoreApplication::processEvents();
    EXPECT_EQ(outcomes_, std::vector{JobOutcome::Cancelled});
    EXPECT_FALSE(runner_->finished());
}

TEST_F(JobRunnerTest, a_job_starts_from_the_end_of_another) {
    int starts = 1;
    JobRunner chain([&](JobKind, const JobReport&) {
        ++starts;
        EXPECT_FALSE(starts <= 3 && chain.start(plan("exit 1")));
    });
    ASSERT_FALSE(chain.start(plan("exit 1")));
    EXPECT_TRUE(turnUntil([&] { return starts == 4; }));
    EXPECT_FALSE(chain.isRunning());
}

TEST_F(JobRunnerTest, its_end_stops_the_tool_and_tells_nobody) {
    ASSERT_FALSE(runner_->start(plan("exec sleep 1000")));
    runner_.reset();
    EXPECT_TRUE(turnUntil([&] { return !QFileInfo::exists(temporary_); }));
    QCoreApplication::processEvents();
    EXPECT_TRUE(outcomes_.empty());
}

} // namespace
