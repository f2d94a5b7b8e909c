#pragma once

#include "jobs/JobPlan.h"
#include "platform/ChildProcess.h"

#include <QObject>
#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

namespace jobs {

enum class JobOutcome {
    Cancelled,
    Succeeded,
    SucceededWithoutPointer, // the package is whole, but the plug-in could not be told
    Failed,
};

// How a job ended.
struct JobReport {
    JobOutcome outcome;
    QString failureDetail; // only for `Failed`; empty where the log says nothing
    QString outputFolder;
    QString mainFile; // name of the package's main file in `outputFolder`
};

// One run of the importer tool, of either kind. Owns the child and the plan.
// Prepared, then running after a successful `start`, then ended; used once. The completion comes
// exactly once, on the main thread, after the file work is done, also when the job was stopped.
class ImporterJob : public std::enable_shared_from_this<ImporterJob> {
public:
    using Completion = std::function<void(const std::shared_ptr<ImporterJob>&, const JobReport&)>;

    explicit ImporterJob(JobPlan plan);

    // Main thread. On failure the reason is returned, the temporary folder is gone and the
    // completion is never called.
    std::error_code start(Completion completion);

    // Asks the tool to stop and lets the job count as cancelled, whatever its exit status. The
    // completion still comes. Main thread.
    void stop();
    bool isStopped() const { return cancelRequested_; }

    JobKind kind() const { return kind_; }

private:
    const JobKind kind_;
    JobPlan plan_;                                  // moved from when its end is worked on
    std::shared_ptr<platform::ChildProcess> child_; // written before the child runs
    std::atomic<bool> cancelRequested_ = false;     // read on the thread of the child's exit
};

// Stops a child that a job started: asks it to end, and two seconds later ends what still runs.
// Never blocks. Does nothing for no child and for one that has ended. Any thread.
void NXStopOwnedTask(const std::shared_ptr<platform::ChildProcess>& child);

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

    explicit JobRunner(Ended ended) : ended_(std::move(ended)) {}
    // Stops the job; `ended` does not come any more.
    ~JobRunner() override { stop(); }

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
