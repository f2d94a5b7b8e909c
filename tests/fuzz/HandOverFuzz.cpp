// What a geocoder has answered and a person has typed, on its way to the importer: the files that
// are handed over, the record of the choice, and the tool's arguments. Six fields: "p" for a place
// or "r" for a route, with two digits for the radius or the travel and the service; the rows that
// are chosen, a digit each; the query; the service's title; its address; the answer.
//
// At most 4096 bytes

#include "jobs/PlaceImport.h"
#include "jobs/RouteImport.h"
#include "platform/HttpsAddress.h"
#include "search/Photon.h"
#include "tests/fuzz/Schema.h"

#include <QDir>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using fuzz::require;
using fuzz::Schema;
using fuzz::StrictJson;

namespace {

const QDateTime now(QDate(2026, 3, 7), QTime(9, 5, 1));

// The folders of a job, in memory where the system has a place for that, and a tool.
class Workplace {
public:
    Workplace()
        : folder_((QDir(u"/dev/shm"_s).exists() ? u"/dev/shm"_s : QDir::tempPath()) +
                  u"/fuzz-XXXXXX"_s) {
        QFile tool(folder_.filePath(u"Norvaxel-Ortsimport"_s));
        require(tool.open(QIODevice::WriteOnly) &&
                    tool.setPermissions(QFile::ReadOwner | QFile::ExeOwner) &&
                    QDir(folder()).mkdir(u"temporary"_s),
                "there is a place to work");
        qputenv("XDG_DATA_HOME", folder().toUtf8());
        qputenv("TMPDIR", folder_.filePath(u"temporary"_s).toUtf8());
    }

    QString folder() const { return folder_.path(); }
    bool isClean() const { return QDir(folder_.filePath(u"temporary"_s)).isEmpty(); }

private:
    QTemporaryDir folder_;
};

Schema schema(const char* name) {
    return Schema(QStringLiteral(NORVAXEL_SCHEMAS "/") + QLatin1StringView(name) +
                  u".schema.json"_s);
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    require(file.open(QIODevice::ReadOnly), "a file that is handed over is there");
    return file.readAll();
}

// The document, which is JSON and fits its schema.
QVariantMap fitting(const QByteArray& bytes, const Schema& rules, const char* promise) {
    const auto document = StrictJson::read(bytes, StrictJson::Twice::Refused);
    require(document && rules.fits(*document), promise);
    return document->toMap();
}

bool isText(const QVariant& value, const QString& text) {
    return fuzz::isText(value) && value.toString() == text;
}

bool isNumber(const QVariant& value, double number) {
    return fuzz::isNumber(value) && value.toDouble() == number;
}

// The new package's folder, which is not there yet.
bool isNewFolder(const QString& path, const QString& parent) {
    return QFileInfo(path).path() == parent && !QFileInfo::exists(path);
}

void checkPlace(const Workplace& workplace, const jobs::PlaceRequest& request) {
    static const Schema selectedRules = schema("photon-selected");
    static const Schema choiceRules = schema("import-choice");
    static const Schema searchRules = schema("photon-search");
    const QString endpoint = request.endpoint.trimmed();
    const auto made = jobs::preparePlaceImport(request, workplace.folder(), now);
    if (const auto* refusal = std::get_if<jobs::Refusal>(&made)) {
        require(*refusal == jobs::Refusal::ServiceAddress && !platform::httpsAddress(endpoint),
                "a place is refused for nothing but its service's address");
        return;
    }
    const auto& plan = std::get<jobs::JobPlan>(made);
    const QString selectedPath = plan.temporaryFolder.file(u"photon-selected.json"_s);
    const QVariantMap selected =
        fitting(contentOf(selectedPath), selectedRules, "what is selected fits its schema");
    require(selected[u"features"_s].toList().value(0).toMap() == request.feature.toVariantMap(),
            "what is selected is the row's feature");
    require(contentOf(plan.temporaryFolder.file(u"photon-search.json"_s)) ==
                    request.photonResponse &&
                plan.packageFiles.at(0).bytes == request.photonResponse,
            "the answer is handed over as it came");
    if (const auto answer = StrictJson::read(request.photonResponse))
        require(searchRules.fits(*answer), "an answer with a row fits its schema");
    const QVariantMap choice = fitting(plan.packageFiles.at(1).bytes, choiceRules,
                                       "the record of the choice fits its schema");
    const QString radius =
        QStringList{u"0.4"_s, u"0.8"_s, u"1.2"_s, u"2.0"_s}.at(request.radiusIndex);
    require(isText(choice[u"query"_s], request.searchedQuery) &&
                isText(choice[u"name"_s], request.name) &&
                isText(choice[u"source"_s], request.source) &&
                isText(choice[u"endpoint"_s], endpoint) && isText(choice[u"radius_km"_s], radius) &&
                isNumber(choice[u"selected_result"_s], request.selectedRow + 1),
            "the record holds what was chosen");
    QStringList expected{u"--fetch"_s,
                         u"--place"_s,
                         request.searchedQuery,
                         u"--geocoder-input"_s,
                         selectedPath,
                         u"--result-index"_s,
                         u"1"_s,
                         u"--radius-km"_s,
                         radius,
                         u"--output"_s,
                         plan.outputFolder};
    if (!request.isDirect)
        expected += {u"--endpoint"_s, endpoint, u"--3d"_s};
    else
        expected += {u"--osm-api"_s, u"--3d"_s};
    require(plan.arguments == expected, "the tool is told what was chosen");
    require(
        isNewFolder(plan.outputFolder, workplace.folder() + "/Norvaxel/Norvaxel 3D/Ortsdaten"_L1),
        "the package's folder is a new one among the places");
}

void checkRoute(const Workplace& workplace, const jobs::RouteRequest& request) {
    static const Schema rules = schema("stations");
    const QString endpoint = request.endpoint.trimmed();
    const auto& stations = request.stations;
    const bool isNamed = std::all_of(stations.begin(), stations.end(), [](const auto& each) {
        return !each.name.trimmed().isEmpty() && each.name.trimmed().size() <= 200;
    });
    const auto made = jobs::prepareRouteImport(request, workplace.folder(), now);
    if (const auto* refusal = std::get_if<jobs::Refusal>(&made)) {
        const auto why = stations.size() < 2 || stations.size() > 32 ? jobs::Refusal::ChoiceMissing
                         : !platform::plainHttpsAddress(endpoint)    ? jobs::Refusal::ServiceAddress
                                                                     : jobs::Refusal::StationName;
        require(
            *refusal == why && (why != jobs::Refusal::StationName || !isNamed),
            "a route is refused for its stations, its service's address or a name, in this order");
        return;
    }
    require(isNamed, "a station has a name of at most 200 units");
    const auto& plan = std::get<jobs::JobPlan>(made);
    const QString path = plan.temporaryFolder.file(u"stations.json"_s);
    const QVariantMap document = fitting(contentOf(path), rules, "the stations fit their schema");
    const QVariantList list = document[u"stations"_s].toList();
    require(list.size() == stations.size(), "every station is handed over");
    for (qsizetype i = 0; i < stations.size(); ++i) {
        const QVariantMap station = list[i].toMap();
        require(isText(station[u"name"_s], stations.at(i).name.trimmed()) &&
                    isNumber(station[u"lon"_s], stations.at(i).lon) &&
                    isNumber(station[u"lat"_s], stations.at(i).lat),
                "a station is handed over as it was chosen");
    }
    QStringList expected{u"--route"_s,      u"--stations"_s, path,     u"--output"_s,
                         plan.outputFolder, u"--endpoint"_s, endpoint, u"--3d"_s};
    if (request.travel == jobs::Travel::Train)
        expected += {u"--travel"_s, u"rail"_s};
    if (request.travel == jobs::Travel::Flight)
        expected += {u"--travel"_s, u"flight"_s};
    require(plan.arguments == expected, "the tool is told what was chosen");
    require(isNewFolder(plan.outputFolder, workplace.folder() + "/Norvaxel/Norvaxel 3D/Routen"_L1),
            "the package's folder is a new one among the routes");
}

int digit(char letter) {
    return letter >= '0' && letter <= '9' ? letter - '0' : 0;
}

} // namespace

// Known to fit, and known not to: the examples of the schemas, whole and with a member less.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    for (const char* name : {"photon-selected", "photon-search", "stations", "import-choice"}) {
        const Schema rules = schema(name);
        const auto example = StrictJson::read(contentOf(
            QStringLiteral(NORVAXEL_SCHEMAS "/examples/") + QLatin1StringView(name) + u".json"_s));
        require(example && rules.fits(*example), "an example fits its schema");
        QVariantMap less = example->toMap();
        less.remove(less.lastKey());
        less.remove(u"features"_s);
        require(!rules.fits(less), "an example without a member fits no schema");
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Workplace workplace;
    const QList<QByteArray> parts = fuzz::fields(data, size, 6);
    const QByteArray kind = parts.at(0).leftJustified(3, '0');
    const QString query = search::NXText(QString::fromUtf8(parts.at(2)));
    const QString title = QString::fromUtf8(parts.at(3));
    const QString address = QString::fromUtf8(parts.at(4));
    // What the window lets through.
    if (query.isEmpty() || query.size() > search::longestQuery || title.isEmpty())
        return -1;
    const auto rows = search::readPhotonAnswer(parts.at(5), query);
    if (!rows || rows->isEmpty() || parts.at(1).isEmpty())
        return -1;
    const auto chosen = [&](char letter) { return digit(letter) % int(rows->size()); };
    if (kind.front() == 'r') {
        QList<jobs::Station> stations;
        for (const char each : parts.at(1)) {
            const search::ResultRow& row = rows->at(chosen(each));
            stations += {row.name, row.detail, row.longitude, row.latitude};
        }
        checkRoute(workplace, {stations, address, jobs::Travel(digit(kind.at(1)) % 3)});
    } else {
        const int row = chosen(parts.at(1).front());
        checkPlace(workplace, {query, parts.at(5), row, rows->at(row).name, rows->at(row).feature,
                               digit(kind.at(1)) % 4, title, digit(kind.at(2)) % 2 == 0, address});
    }
    require(workplace.isClean(), "nothing of a job is left behind");
    return 0;
}
