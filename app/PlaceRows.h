#pragma once

#include "jobs/StationList.h"
#include "look/controls/PlaceList.h"
#include "search/Photon.h"

#include <QList>
#include <QString>

namespace app {

// How the lists of a window that reads in `direction` show places that were found, and the stations
// of a route with their numbers. Pure; any thread.
QList<look::PlaceRow> rowsOf(const QList<search::ResultRow>& results,
                             Qt::LayoutDirection direction);
QList<look::PlaceRow> rowsOf(const QList<jobs::Station>& stations, Qt::LayoutDirection direction);

// A detail (address parts, then latitude and longitude) as a person sees and hears it: where any of
// it, or the window, reads from the right, each part and the coordinates stand by themselves, so
// that no sign moves behind its number and no part out of its order (UAX #9, directional isolates).
// Pure; any thread.
QString shownDetail(const QString& detail, Qt::LayoutDirection direction);

} // namespace app
