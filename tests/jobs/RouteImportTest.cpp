#include "jobs/RouteImport.h"

#include "JobFolders.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#ifdef __linux__
#include "UnmakableFile.h"
#endif

namespace {

const QDateTime now(QDate(2026, 3, 7), QTime(9, 5, 1));

class RouteImport : public JobFolders {
protected:
    Preparation prepare(const RouteRequest& request) {
        return prepareRouteImport(request, tools_, now);
    }
    JobPlan plan(const RouteRequest& request) { return std::get<JobPlan>(prepare(request)); }
    Refusal refusal(const RouteRequest& request) { return refusalIn(prepare(request)); }

    RouteRequest request_{
        .stations = {{u" Berlin Hbf "_s, u"Detail"_s, 13.3694, 52.5251},
                     {u"Würzburg \"%@\""_s, u"Detail"_s, 9, 49.75},
                     {u"München Hbf"_s, u"Detail"_s, 11.5575, 48.1401}},
        .endpoint = u" https://routing.example/route/v1/driving\n"_s,
        .travel = Travel::Train,
    };
};

QList<Station> stationsNamed(qsizetype count, const QString& name) {
    return QList<Station>(count, Station{name, {}, 1, 2});
}

} // namespace

TEST(RouteImportModeArguments, say_how_a_route_is_travelled) {
    struct Case {
        bool threeD;
        int travelMode;
        bool withMap;
        QStringList arguments;
    };
    const QStringList flat{u"--3d"_s};
    const Case cases[] = {
        {true, 0, true, flat},
        {true, 1, true, {u"--3d"_s, u"--travel"_s, u"rail"_s}},
        {true, 1, false, {u"--3d"_s, u"--travel"_s, u"rail"_s}},
        {true, 2, true, {u"--3d"_s, u"--travel"_s, u"flight"_s}},
        {true, 2, false, {u"--3d"_s, u"--travel"_s, u"flight"_s}},
        {true, -1, true, flat},
        {true, 3, false, flat},
        {false, 0, true, {u"--with-map"_s}},
        {false, 1, true, {u"--with-map"_s}},
        {false, 2, false, {}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(nx::routeImportModeArguments(c.threeD, c.travelMode, c.withMap), c.arguments);
}

TEST_F(RouteImport, has_folders_and_files_of_its_own) {
    const JobPlan job = plan(request_);
    const QString folder = job.temporaryFolder.path();
    EXPECT_TRUE(QFileInfo(folder).fileName().startsWith(u"Norvaxel-Route-"_s));
    const QByteArray handOver = contents(folder + u"/stations.json"_s);
    const QJsonObject expected{
        {"stations"_L1,
         QJsonArray{
             QJsonObject{{"name"_L1, u"Berlin Hbf"_s}, {"lon"_L1, 13.3694}, {"lat"_L1, 52.5251}},
             QJsonObject{{"name"_L1, u"Würzburg \"%@\""_s}, {"lon"_L1, 9}, {"lat"_L1, 49.75}},
             QJsonObject{
                 {"name"_L1, u"München Hbf"_s}, {"lon"_L1, 11.5575}, {"lat"_L1, 48.1401}}}}};
    EXPECT_EQ(QJsonDocument::fromJson(handOver).object(), expected);
    EXPECT_LT(handOver.indexOf("\"lat\""), handOver.indexOf("\"lon\""));
    EXPECT_GT(handOver.count('\n'), 10);
    EXPECT_EQ(job.logPath, folder + u"/route.log"_s);
    const QRegularExpression output(
        u"/Routen/berlin-hbf-munchen-hbf-20260307-090501-[0-9A-F]{8}$"_s);
    EXPECT_TRUE(output.match(job.outputFolder).hasMatch()) << qPrintable(job.outputFolder);
    EXPECT_EQ(job.requiredFiles,
              (QStringList{u"route.nxd"_s, u"stations.nxd"_s, u"basemap/origin.nxd"_s,
                           u"basemap/norvaxel3d.json"_s}));
    EXPECT_EQ(job.pointerName, u"last-route.txt"_s);
    EXPECT_TRUE(job.packageFiles.isEmpty());
}

TEST_F(RouteImport, gives_the_tool_its_arguments) {
    const QStringList expected{u"--route"_s,
                               u"--stations"_s,
                               u"/t/s.json"_s,
                               u"--output"_s,
                               u"/o"_s,
                               u"--endpoint"_s,
                               u"https://routing.example/route/v1/driving"_s,
                               u"--3d"_s,
                               u"--travel"_s,
                               u"rail"_s};
    EXPECT_EQ(routeArguments(request_, u"/t/s.json"_s, u"/o"_s), expected);
}

TEST_F(RouteImport, takes_two_to_32_stations) {
    for (const qsizetype count : {0, 1, 33}) {
        request_.stations = stationsNamed(count, u"A"_s);
        EXPECT_EQ(refusal(request_), Refusal::ChoiceMissing) << count;
    }
    EXPECT_FALSE(QFileInfo::exists(root_.filePath(u"home"_s)));
    for (const qsizetype count : {2, 32}) {
        request_.stations = stationsNamed(count, u"A"_s);
        EXPECT_TRUE(std::holds_alternative<JobPlan>(prepare(request_))) << count;
    }
}

TEST_F(RouteImport, refuses_addresses_with_anything_behind_their_path) {
    QFile::remove(tool_);
    for (const char16_t* address : {u"https://u:p@a.b/", u"https://a.b/?", u"https://a.b/#x"}) {
        request_.endpoint = QString::fromUtf16(address);
        EXPECT_EQ(refusal(request_), Refusal::ServiceAddress) << qPrintable(request_.endpoint);
    }
    request_.stations.clear();
    EXPECT_EQ(refusal(request_), Refusal::ChoiceMissing) << "before the address";
    EXPECT_FALSE(QFileInfo::exists(root_.filePath(u"home"_s)));
}

TEST_F(RouteImport, refuses_names_that_are_blank_or_too_long) {
    for (const QString& name : {u"   "_s, QString(), QString(201, u'x')}) {
        for (const int at : {0, 1, 2}) {
            RouteRequest request = request_;
            request.stations[at].name = name;
            EXPECT_EQ(refusal(request), Refusal::StationName) << at;
        }
    }
    request_.stations[1].name = u' ' + QString(200, u'x') + u' ';
    EXPECT_TRUE(std::holds_alternative<JobPlan>(prepare(request_)));
}

#ifdef __linux__
TEST_F(RouteImport,
       a_log_that_cannot_be_made_is_told_as_the_folder_or_as_a_log_that_cannot_be_opened) {
    const std::pair<int, Refusal> rows[] = {
        {EACCES, Refusal::OutputFolder}, {ENOSPC, Refusal::OutputFolder}, {EMFILE, Refusal::Log}};
    for (const auto& [error, told] : rows) {
        const UnmakableFile log("route.log", error);
        EXPECT_EQ(refusal(request_), told) << error;
    }
}
#endif

TEST_F(RouteImport, does_not_make_a_missing_temporary_folder) {
    QDir().rmdir(temporary_);
    EXPECT_EQ(std::get<Refusal>(prepare(request_)), Refusal::TemporaryFolder);
    EXPECT_FALSE(QFileInfo::exists(temporary_));
}
