#pragma once

#include "jobs/StationList.h"
#include "look/controls/PlaceListModel.h"
#include "search/ResultRow.h"

#include <QList>

namespace app {

// How the lists show places that were found, and the stations of a route with their numbers. Pure;
// any thread.
QList<look::PlaceRow> rowsOf(const QList<search::ResultRow>& results);
QList<look::PlaceRow> rowsOf(const QList<jobs::Station>& stations);

} // namespace app
