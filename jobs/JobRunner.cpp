#include "jobs/JobRunner.h"

#include "platform/Files.h"
#include "platform/Threads.h"

#include <QFileInfo>
#include <QPointer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace jobs {
namespace {

// Whether the tool ended of itself or was asked to.
enum class Ending { ByItself, Stopped };

platform::ChildCommand commandOf(const JobPlan& plan, int log) {
    platform::ChildCommand command;
    command.program = filePath(plan.tool);
    for (const QString& argument : plan.arguments)
        command.arguments.push_back(argument.toStdString());
    command.workingDirectory = filePath(plan.temporaryFolder.path());
    command.output = log;
    command.error = log;
    return command;
}

bool isComplete(const JobPlan& plan) {
    return std::ranges::all_of(plan.requiredFiles, [&](const QString& name) {
        return QFileInfo::exists(plan.outputFolder + u'/' + name);
    });
}

bool writePointer(const JobPlan& plan) {
    const QString mainFile = plan.outputFolder + u'/' + plan.requiredFiles.first();
    return !platform::replaceFile(filePath(plan.supportFolder + u'/' + plan.pointerName),
                                  mainFile.toUtf8() + '\n', platform::Durability::Durable);
}

JobReport reportOf(const JobPlan& plan, const platform::ChildExit& exit, Ending ending) {
    JobReport report{JobOutcome::Cancelled, {}, plan.outputFolder, plan.requiredFiles.first()};
    // A stopped job stays one, even if the tool managed to finish meanwhile.
    if (ending == Ending::Stopped)
        return report;
    if (!exit.succeeded() || !isComplete(plan)) {
        report.outcome = JobOutcome::Failed;
        report.failureDetail = plan.failureDetail(plan.logPath);
        return report;
    }
    for (const JobFile& file : plan.packageFiles) {
        // The package is whole without these: they only tell how it came about.
        (void)platform::replaceFile(filePath(plan.outputFolder + u'/' + file.name), file.bytes,
                                    platform::Durability::Durable);
    }
    report.outcome =
        writePointer(plan) ? JobOutcome::Succeeded : JobOutcome::SucceededWithoutPointer;
    return report;
}

// The file work after the tool has ended: checks the package, lays the program's files beside it,
// writes the pointer file, keeps a copy of the log. The temporary folder goes with the plan.
JobReport finishJob(JobPlan plan, const platform::ChildExit& exit, Ending ending) {
    JobReport report = reportOf(plan, exit, ending);
    // The last log is only a help: nothing is said where it cannot be kept.
    (void)platform::replaceByCopy(filePath(plan.supportFolder + "/letzter-import.log"_L1),
                                  filePath(plan.logPath));
    return report;
}

} // namespace

ImporterJob::ImporterJob(JobPlan plan) : kind_(plan.kind), plan_(std::move(plan)) {}

std::error_code ImporterJob::start(Completion completion) {
    const platform::UniqueFd log = std::move(plan_.log); // the tool's own from here on
    child_ = platform::ChildProcess::make(commandOf(plan_, log.get()));
    const auto failure = child_->start(
        [self = shared_from_this(), completion = std::move(completion)](platform::ChildExit exit) {
            const auto ending = self->isStopped() ? Ending::Stopped : Ending::ByItself;
            const JobReport report = finishJob(std::move(self->plan_), exit, ending);
            platform::postToMain([self, completion, report] { completion(self, report); });
        });
    if (failure) {
        child_.reset();
        const JobPlan gone = std::move(plan_); // and its folder with it
    }
    return failure;
}

void NXStopOwnedTask(const std::shared_ptr<platform::ChildProcess>& child) {
    platform::stopChild(child);
}

void ImporterJob::stop() {
    cancelRequested_ = true;
    NXStopOwnedTask(child_);
}

std::error_code JobRunner::start(JobPlan plan) {
    finished_.reset();
    auto job = std::make_shared<ImporterJob>(std::move(plan));
    const std::error_code failure =
        job->start([self = QPointer(this)](const auto& ended, const JobReport& report) {
            if (self)
                self->jobEnded(ended, report);
        });
    if (!failure)
        job_ = std::move(job);
    return failure;
}

void JobRunner::stop() {
    if (job_)
        job_->stop();
}

void JobRunner::jobEnded(const std::shared_ptr<ImporterJob>& job, const JobReport& report) {
    if (job != job_)
        return;
    job_.reset();
    if (report.outcome == JobOutcome::Succeeded ||
        report.outcome == JobOutcome::SucceededWithoutPointer)
        finished_ = {report.outputFolder, report.mainFile};
    ended_(job->kind(), report);
}

} // namespace jobs
