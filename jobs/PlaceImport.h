#pragma once

#include "jobs/JobPlan.h"

#include <QDateTime>
#include <QJsonObject>

namespace jobs {

// What the person chose for a place import.
struct PlaceRequest {
    QString searchedQuery;     // the query that the shown results answer
    QByteArray photonResponse; // the geocoder's answer to it, as received
    int selectedRow;           // from 0
    QString name;              // the selected row's name
    QJsonObject feature;       // the selected row's feature
    int radiusIndex;           // 0 to 3
    QString source;            // the data service's title as shown
    bool isDirect;             // whether the service is the OSM API itself
    QString endpoint;          // the data service's address as typed
};

// The radius that the tool is given for a pop-up's index, in kilometres.
QString radiusKilometres(int radiusIndex);

// The tool's arguments for a place import. Paths are absolute; `endpoint` is trimmed.
QStringList placeArguments(const PlaceRequest& request, const QString& selectedFeatureFile,
                           const QString& outputFolder);

// What is recorded beside the package about how it was chosen, as pretty-printed JSON.
QByteArray placeChoiceRecord(const PlaceRequest& request);

// Checks the request, makes the workspace and the hand-over files. `toolFolder` is where the
// importer lies, `now` names the package's folder. Main thread.
Preparation preparePlaceImport(const PlaceRequest& request, const QString& toolFolder,
                               const QDateTime& now);

} // namespace jobs
