#include "jobs/PlaceImport.h"

#include "jobs/FailureDetail.h"
#include "jobs/JobPreparation.h"
#include "jobs/WorkNames.h"
#include "platform/HttpsAddress.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <array>
#include <functional>

using namespace Qt::StringLiterals;

namespace jobs {
namespace {

JobValues placeValues() {
    return {
        .kind = JobKind::Place,
        .folders = {u"Ortsdaten"_s, u"Norvaxel-Ortsimport-"_s, platform::Parents::Create},
        .log = {u"import.log"_s, Refusal::Log, placeFailureDetail},
        .package = {{u"origin.nxd"_s, u"norvaxel3d.json"_s}, u"last-import.txt"_s},
    };
}

QByteArray selectedFeatureCollection(const QJsonObject& feature) {
    const QJsonObject collection{{"type"_L1, u"FeatureCollection"_s},
                                 {"features"_L1, QJsonArray{feature}}};
    return QJsonDocument(collection).toJson(QJsonDocument::Compact);
}

} // namespace

QString radiusKilometres(int radiusIndex) {
    static constexpr std::array radii{"0.4"_L1, "0.8"_L1, "1.2"_L1, "2.0"_L1};
    return radii.at(size_t(radiusIndex));
}

QStringList placeArguments(const PlaceRequest& request, const QString& selectedFeatureFile,
                           const QString& outputFolder) {
    QStringList arguments{u"--fetch"_s,
                          u"--place"_s,
                          request.searchedQuery,
                          u"--geocoder-input"_s,
                          selectedFeatureFile,
                          u"--result-index"_s,
                          u"1"_s, // the selected feature is the only one in that file
                          u"--radius-km"_s,
                          radiusKilometres(request.radiusIndex),
                          u"--output"_s,
                          outputFolder};
    if (request.isDirect)
        arguments += u"--osm-api"_s;
    else
        arguments += {u"--endpoint"_s, request.endpoint.trimmed()};
    return arguments << u"--3d"_s;
}

QByteArray placeChoiceRecord(const PlaceRequest& request) {
    return QJsonDocument(QJsonObject{
                             {"query"_L1, request.searchedQuery},
                             {"selected_result"_L1, request.selectedRow + 1},
                             {"name"_L1, request.name},
                             {"radius_km"_L1, radiusKilometres(request.radiusIndex)},
                             {"source"_L1, request.source},
                             {"endpoint"_L1, request.endpoint.trimmed()},
                             {"selected_feature_input"_L1, u"geocoder.json"_s},
                             {"cli_result_index"_L1, 1},
                         })
        .toJson(QJsonDocument::Indented);
}

Preparation preparePlaceImport(const PlaceRequest& request, const QString& toolFolder,
                               const QDateTime& now) {
    if (request.photonResponse.isEmpty() || request.searchedQuery.isEmpty())
        return Refusal::ChoiceMissing;
    // Also for the fixed services: what is checked is what the field holds.
    if (!platform::httpsAddress(request.endpoint.trimmed()))
        return Refusal::ServiceAddress;
    const JobFile selected{u"photon-selected.json"_s, selectedFeatureCollection(request.feature)};
    const JobFile search{u"photon-search.json"_s, request.photonResponse};
    const JobFile choice{u"import-choice.json"_s, placeChoiceRecord(request)};
    return prepareJob(placeValues(),
                      {
                          .packageName = placeFolderName(request.name, now, QUuid::createUuid()),
                          .handOver = [&] { return QList{selected, search}; },
                          .arguments = std::bind_front(placeArguments, std::cref(request)),
                          .packageFiles = {search, choice},
                      },
                      toolFolder);
}

} // namespace jobs
