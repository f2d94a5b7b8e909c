#pragma once

#include "jobs/ImporterJob.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <system_error>

namespace jobs {

// A finished package on disk.
struct Package {
    QString directory;
    QString filename; // the main file in `directory`
};

// The job in progress, place or route, and the package that the last one made. Main thread.
//
// States: idle -> running -> idle, or idle -> running -> stopping -> idle.
// Invariant: `ended` comes once for each start that succeeded, in the state that then holds.
class JobRunner : public QObject {
public:
    using Ended = std::function<void(JobKind kind, const JobReport& report)>;

    explicit JobRunner(Ended ended);
    // Stops the job; `ended` does not come any more.
    ~JobRunner() override;

    // Runs the plan. The package of an earlier job is no longer the last one, whatever comes. On
    // failure nothing runs, and the reason is returned. To be called while idle.
    std::error_code start(JobPlan plan);

    // Asks the tool to end; it is killed two seconds later. The job stays until it has ended. Does
    // nothing while idle.
    void stop();

    bool isRunning() const { return job_ != nullptr; }
    bool isStopping() const { return job_ && job_->isStopped(); }
    // The package of the last job, if that succeeded.
    const std::optional<Package>& finished() const { return finished_; }

private:
    void jobEnded(const std::shared_ptr<ImporterJob>& job, const JobReport& report);

    const Ended ended_;
    std::shared_ptr<ImporterJob> job_; // null while idle
    std::optional<Package> finished_;
};

} // namespace jobs
