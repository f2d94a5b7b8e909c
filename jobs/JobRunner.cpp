#include "jobs/JobRunner.h"

#include <QPointer>

#include <utility>

namespace jobs {

JobRunner::JobRunner(Ended ended) : ended_(std::move(ended)) {}

JobRunner::~JobRunner() {
    stop();
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
