#pragma once

#include "jobs/JobPlan.h"
#include "jobs/StationList.h"

#include <QDateTime>
#include <QStringList>

namespace nx {

// The tool's arguments for a kind of route. `travelMode` is a `Travel` as a number; others count as
// a car. Without three dimensions, which is the plug-in's other variant, only the map matters.
QStringList routeImportModeArguments(bool threeD, int travelMode, bool withMap);

} // namespace nx

namespace jobs {

// How a route is travelled, in the order of the window's segments.
enum class Travel { Car, Train, Flight };

// What the person chose for a route.
struct RouteRequest {
    QList<Station> stations;
    QString endpoint; // the routing service's address as typed
    Travel travel;
};

// The tool's arguments for a route. Paths are absolute; `endpoint` is trimmed.
QStringList routeArguments(const RouteRequest& request, const QString& stations,
                           const QString& outputFolder);

// Checks the request, makes the workspace and the hand-over file. `toolFolder` is where the
// importer lies, `now` names the route's folder. Main thread.
Preparation prepareRouteImport(const RouteRequest& request, const QString& toolFolder,
                               const QDateTime& now);

} // namespace jobs
