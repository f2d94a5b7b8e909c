#include "jobs/RouteImport.h"

#include "jobs/FailureDetail.h"
#include "jobs/JobPreparation.h"
#include "jobs/WorkNames.h"
#include "platform/HttpsAddress.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <functional>

using namespace Qt::StringLiterals;

QStringList nx::routeImportModeArguments(bool threeD, int travelMode, bool withMap) {
    if (!threeD)
        return withMap ? QStringList{u"--with-map"_s} : QStringList();
    switch (static_cast<jobs::Travel>(travelMode)) {
    case jobs::Travel::Train:
        return {u"--3d"_s, u"--travel"_s, u"rail"_s};
    case jobs::Travel::Flight:
        return {u"--3d"_s, u"--travel"_s, u"flight"_s};
    case jobs::Travel::Car:
        break;
    }
    return {u"--3d"_s};
}

namespace jobs {
namespace {

constexpr qsizetype longestStationName = 200; // UTF-16 units

JobValues routeValues() {
    return {
        .kind = JobKind::Route,
        .folders = {u"Routen"_s, u"Norvaxel-Route-"_s, platform::Parents::MustExist},
        .log = {u"route.log"_s, Refusal::OutputFolder, routeFailureDetail},
        .package = {{u"route.nxd"_s, u"stations.nxd"_s, u"basemap/origin.nxd"_s,
                     u"basemap/norvaxel3d.json"_s},
                    u"last-route.txt"_s},
    };
}

// The file that hands the stations over.
std::variant<QList<JobFile>, Refusal> stationsFile(const QList<Station>& stations) {
    QJsonArray list;
    for (const Station& station : stations) {
        const QString name = station.name.trimmed();
        if (name.isEmpty() || name.size() > longestStationName)
            return Refusal::StationName;
        list.append(
            QJsonObject{{"name"_L1, name}, {"lon"_L1, station.lon}, {"lat"_L1, station.lat}});
    }
    const QJsonDocument document(QJsonObject{{"stations"_L1, list}});
    return QList{JobFile{u"stations.json"_s, document.toJson(QJsonDocument::Indented)}};
}

} // namespace

QStringList routeArguments(const RouteRequest& request, const QString& stations,
                           const QString& outputFolder) {
    const QStringList arguments{
        u"--route"_s,    u"--stations"_s,           stations, u"--output"_s, outputFolder,
        u"--endpoint"_s, request.endpoint.trimmed()};
    return arguments + nx::routeImportModeArguments(true, int(request.travel), true);
}

Preparation prepareRouteImport(const RouteRequest& request, const QString& toolFolder,
                               const QDateTime& now) {
    const QList<Station>& stations = request.stations;
    if (stations.size() < 2 || stations.size() > mostStations)
        return Refusal::ChoiceMissing;
    if (!platform::plainHttpsAddress(request.endpoint.trimmed()))
        return Refusal::ServiceAddress;
    return prepareJob(
        routeValues(),
        {
            .packageName = routeFolderName(stations.first().name, stations.last().name, now,
                                           QUuid::createUuid()),
            .handOver = [&] { return stationsFile(stations); },
            .arguments = std::bind_front(routeArguments, std::cref(request)),
            .packageFiles = {},
        },
        toolFolder);
}

} // namespace jobs
