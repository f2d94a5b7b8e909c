#pragma once

#include "jobs/ImporterJob.h"
#include "jobs/RouteImport.h"

#include <QString>

#include <system_error>

namespace app {

enum class JobKind { Place, Route };

// The sentences of a job, in the interface's language. Pure.

// Why a job was not started.
QString refusalText(JobKind kind, jobs::Refusal refusal);
// Why the tool itself could not be started.
QString startFailureText(JobKind kind, const std::error_code& failure);
// While the tool runs; `travel` matters for a route only.
QString progressText(JobKind kind, jobs::Travel travel);
// While a stopped tool has not ended yet.
QString stoppingText(JobKind kind);
// How the job ended.
QString outcomeText(JobKind kind, const jobs::JobReport& report);
// The heading of the alert after a failed job.
QString failureTitle(JobKind kind);

} // namespace app
