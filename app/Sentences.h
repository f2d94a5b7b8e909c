#pragma once

#include "jobs/JobRunner.h"
#include "jobs/RouteImport.h"
#include "search/Photon.h"

#include <QString>

#include <system_error>

// Every sentence of a search and of a job, in the interface's language. Where a place and a route
// say different things, the two stand side by side. Pure; any thread.
namespace app {

// What the window is for at the moment is what its job would make.
using Mode = jobs::JobKind;

// The window in a mode: the line under the title, the credits, and the status line's first word.
QString subtitleText(Mode mode);
QString creditText(Mode mode);
QString welcomeText(Mode mode);

// A search. `...Status` stands in the status line, `...Hint` above the list, and `...Instead` in
// the place of its rows.
QString badQueryStatus();
QString searchingStatus();
QString searchingInstead();
QString failureText(search::SearchFailure failure);
QString noPlacesStatus();
QString noPlacesInstead();
QString placesStatus();
QString placesHint(qsizetype places);
QString cancelledSearchStatus();
QString cancelledSearchInstead();
QString editedStatus(Mode mode);
QString editedHint();
QString selectedStatus(Mode mode);

// The stations of a route.
QString addedStationStatus(qsizetype stations);
QString removedStationStatus();
QString movedStationStatus();

// The language of the interface.
QString languageNotSaved();

// Why a job was not started.
QString refusalText(jobs::JobKind kind, jobs::Refusal refusal);
// Why the tool itself could not be started.
QString startFailureText(jobs::JobKind kind, const std::error_code& failure);
// While the tool runs; `travel` matters for a route only.
QString progressText(jobs::JobKind kind, jobs::Travel travel);
// While a stopped tool has not ended yet.
QString stoppingText(jobs::JobKind kind);
// How the job ended.
QString outcomeText(jobs::JobKind kind, const jobs::JobReport& report);
// The heading of the alert after a failed job.
QString failureTitle(jobs::JobKind kind);

} // namespace app
