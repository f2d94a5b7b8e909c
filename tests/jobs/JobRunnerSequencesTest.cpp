// What a person, a tool and an event loop can do to a job, in any order, with real children; after
// each event the runner is what a model of a few lines says, and at the end nothing is left.

#include "ChildTest.h"
#include "ScriptedPlan.h"
#include "Sequences.h"
#include "TurnUntil.h"
#include "jobs/JobRunner.h"

#include <QCoreApplication>

#include <deque>
#include <ostream>

namespace {

const QString helper = QStringLiteral(CHILD_HELPER);
const QString missing = u"/nowhere/at/all"_s;

enum class Package { Whole, None };
enum class Pointer { Writable, InTheWay };

// A tool, and what becomes of its job if nobody stops it: nothing where it never ends by itself.
struct Tool {
    const char* name;
    QString program;
    QStringList arguments;
    Package package;
    Pointer pointer;
    std::optional<JobOutcome> outcome;
    QString detail; // of its failure: the log
};

const Tool tools[] = {
    {"makes it",
     helper,
     {u"exit"_s, u"0"_s},
     Package::Whole,
     Pointer::Writable,
     JobOutcome::Succeeded,
     {}},
    {"makes it again",
     helper,
     {u"exit"_s, u"0"_s},
     Package::Whole,
     Pointer::Writable,
     JobOutcome::Succeeded,
     {}},
    {"makes it without a pointer",
     helper,
     {u"exit"_s, u"0"_s},
     Package::Whole,
     Pointer::InTheWay,
     JobOutcome::SucceededWithoutPointer,
     {}},
    {"makes nothing",
     helper,
     {u"exit"_s, u"0"_s},
     Package::None,
     Pointer::Writable,
     JobOutcome::Failed,
     {}},
    {"fails",
     helper,
     {u"exit"_s, u"7"_s},
     Package::Whole,
     Pointer::Writable,
     JobOutcome::Failed,
     {}},
    {"fails and says why",
     helper,
     {u"print-text-and-exit"_s, u"so ist es"_s, u"1"_s},
     Package::None,
     Pointer::Writable,
     JobOutcome::Failed,
     u"so ist es"_s},
    {"crashes",
     helper,
     {u"die-by"_s, u"9"_s},
     Package::Whole,
     Pointer::Writable,
     JobOutcome::Failed,
     {}},
    {"hangs", helper, {u"hang"_s}, Package::Whole, Pointer::Writable, {}, {}},
    {"ends when asked", helper, {u"exit-on-term"_s}, Package::Whole, Pointer::Writable, {}, {}},
    {"makes it when asked to end",
     helper,
     {u"exit-on-term"_s, u"0"_s},
     Package::Whole,
     Pointer::Writable,
     {},
     {}},
    {"leaves one behind", helper, {u"leave-behind"_s}, Package::Whole, Pointer::Writable, {}, {}},
};
const Tool resisting{"resists", helper, {u"ignore-term"_s}, Package::Whole, Pointer::Writable,
                     {},        {}};

// What a runner shows.
struct Shown {
    bool isRunning = false;
    bool isStopping = false;
    QString directory; // of the last package
    QString filename;

    bool operator==(const Shown&) const = default;
};

void PrintTo(const Shown& shown, std::ostream* out) {
    *out << (shown.isRunning ? "running" : "idle") << (shown.isStopping ? ", stopping" : "")
         << ", package “" << shown.directory.toStdString() << "/" << shown.filename.toStdString()
         << "”";
}

Shown shownBy(const JobRunner& runner) {
    return {runner.isRunning(), runner.isStopping(),
            runner.finished() ? runner.finished()->directory : QString(),
            runner.finished() ? runner.finished()->filename : QString()};
}

class JobRunnerSequences : public ChildTest, protected ScriptedPlan {
protected:
    JobRunnerSequences() {
        // No tool of these makes a package: it is there already, or it is not.
        makePackageBefore();
        QDir().mkpath(blocked_ + u"/last-import.txt/in the way"_s);
    }

    void play(Sequence& sequence) {
        sequence_ = &sequence;
        ends_ = expectedEnds_ = 0;
        renew();
        const unsigned events = 3 + sequence.below(16);
        for (unsigned i = 0; i < events && !HasFailure(); ++i) {
            anyEvent();
            compare();
        }
        quit();
        expectNothingLeft();
    }

private:
    // The job that the model knows of.
    struct Job {
        const Tool* tool;
        JobKind kind;
        QString folder;         // its temporary one
        bool isStopped = false; // asked to end
        bool hasEnded =
            false; // before anybody asked, and nobody on the main thread has heard of it
    };

    void anyEvent() {
        switch (sequence_->below(12)) {
        case 0:
            return sequence_->oneIn(3) ? renew() : turn();
        case 1:
        case 2:
            return stop();
        case 3:
        case 4:
            return letEnd();
        case 5:
        case 6:
            return await();
        case 7:
            return letGetReady();
        default:
            return job_ ? turn() : start();
        }
    }

    // --- events, each told to the runner and to the model ---

    void start() {
        const bool isRare = sequence_->oneIn(1500); // it takes two seconds to end
        const Tool& tool = isRare ? resisting : sequence_->any(tools);
        const bool isThere = !sequence_->oneIn(10);
        const JobKind kind = sequence_->oneIn(2) ? JobKind::Place : JobKind::Route;
        const QString name = u"job-%1"_s.arg(++jobs_);
        sequence_->does(isThere ? std::string("start a tool that ") + tool.name
                                : "start a tool that is missing");
        JobPlan plan = planFor(isThere ? tool.program : missing, tool.arguments, name);
        plan.kind = kind;
        if (tool.package == Package::None)
            plan.outputFolder = nothing_;
        if (tool.pointer == Pointer::InTheWay)
            plan.supportFolder = blocked_;
        EXPECT_EQ(!runner_->start(std::move(plan)), isThere);
        expected_ = {isThere, false, {}, {}};
        if (isThere)
            job_ = Job{&tool, kind, root_.filePath(name)};
    }

    void stop() {
        sequence_->does("stop");
        runner_->stop();
        if (job_)
            job_->isStopped = expected_.isStopping = true;
    }

    // The end of the runner, with whatever runs, and another one.
    void renew() {
        sequence_->does("end and a new one");
        job_.reset();
        expected_ = {};
        runner_ = std::make_unique<JobRunner>(
            [this](JobKind kind, const JobReport& report) { ended(kind, report); });
    }

    void turn() {
        sequence_->does("turn");
        QCoreApplication::processEvents();
    }

    // The tool ends and all is done that is done then, but the main thread looks elsewhere.
    void letEnd() {
        if (!job_ || job_->isStopped || !job_->tool->outcome)
            return;
        sequence_->does("let it end unseen");
        EXPECT_TRUE(waitUntil([&] { return !QFileInfo::exists(job_->folder); }));
        job_->hasEnded = true;
    }

    // Until then a tool that would do something when asked to end is ended as any other.
    void letGetReady() {
        if (!job_ || !job_->tool->arguments.contains(u"exit-on-term"_s) || job_->isStopped)
            return;
        sequence_->does("let it get ready");
        EXPECT_TRUE(
            waitUntil([&] { return contents(job_->folder + u"/import.log"_s) == "ready\n"; }));
    }

    void await() {
        if (!job_ || !(job_->isStopped || job_->tool->outcome))
            return;
        sequence_->does("turn until it has ended");
        const int before = ends_;
        EXPECT_TRUE(turnUntil([&] { return ends_ > before || HasFailure(); }));
    }

    // As the program is ended: what runs is stopped and waited for, or, by a signal, is not.
    void quit() {
        if (job_ && sequence_->oneIn(3)) {
            stop();
            while (job_ && !HasFailure()) { // its end may have started another one
                stop();
                await();
            }
            compare();
        }
        sequence_->does("the end");
        job_.reset();
        runner_.reset();
    }

    // --- what comes back ---

    void ended(JobKind kind, const JobReport& report) {
        ++ends_;
        if (!job_) {
            ADD_FAILURE() << "the end of a job that nobody has started, or one more of it";
            return;
        }
        ++expectedEnds_;
        const Job job = *std::exchange(job_, std::nullopt);
        EXPECT_EQ(kind, job.kind);
        EXPECT_FALSE(QFileInfo::exists(job.folder)) << "told before its folder has gone";
        const bool isOwn = report.outcome == job.tool->outcome;
        const bool isCancel = report.outcome == JobOutcome::Cancelled;
        EXPECT_TRUE(isOwn || (isCancel && job.isStopped && !job.hasEnded))
            << "outcome " << int(report.outcome);
        EXPECT_EQ(report.failureDetail,
                  report.outcome == JobOutcome::Failed ? job.tool->detail : QString());
        expected_ = {};
        if (isOwn && report.outcome != JobOutcome::Failed)
            expected_ = {false, false, output_, u"origin.nxd"_s};
        EXPECT_EQ(shownBy(*runner_), expected_) << "told in another state";
        if (sequence_->oneIn(4)) {
            sequence_->does("and from inside its end:");
            start();
        }
    }

    // --- the judgement ---

    void compare() {
        EXPECT_EQ(shownBy(*runner_), expected_);
        EXPECT_EQ(ends_, expectedEnds_);
    }

    void expectNothingLeft() {
        EXPECT_TRUE(turnUntil([] { return !hasChild(); })) << "a child is left";
        EXPECT_TRUE(turnUntil([&] { return QDir(root_.path(), u"job-*"_s).isEmpty(); }))
            << "a temporary folder is left";
        EXPECT_EQ(ends_, expectedEnds_) << "told of an end when there was nobody to tell";
    }

    const QString blocked_ = root_.filePath(u"blocked"_s);
    const QString nothing_ = root_.filePath(u"nothing"_s);

    Sequence* sequence_ = nullptr;
    int jobs_ = 0; // of all sequences
    int ends_ = 0;
    std::unique_ptr<JobRunner> runner_;

    std::optional<Job> job_;
    Shown expected_;
    int expectedEnds_ = 0;
};

TEST_F(JobRunnerSequences, a_job_is_what_the_model_says_after_every_event) {
    const int descriptors = openDescriptors();
    playSequences(60, [this](Sequence& sequence) { play(sequence); });
    EXPECT_TRUE(turnUntil([&] { return openDescriptors() == descriptors; }))
        << openDescriptors() << " descriptors instead of " << descriptors;
}

} // namespace
