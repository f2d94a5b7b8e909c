#pragma once

#include "jobs/JobPlan.h"

#include <QString>

#include <atomic>
#include <functional>
#include <memory>
#include <system_error>

namespace platform {
class ChildProcess;
} // namespace platform

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
    ImporterJob(const ImporterJob&) = delete;
    ImporterJob& operator=(const ImporterJob&) = delete;

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

} // namespace jobs
