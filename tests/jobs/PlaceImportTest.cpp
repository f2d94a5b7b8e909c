#include "jobs/PlaceImport.h"

#include "JobFolders.h"

#include <QFileInfo>
#include <QJsonDocument>

#ifdef __linux__
#include "UnmakableFile.h"
#endif

namespace {

const QDateTime now(QDate(2026, 3, 7), QTime(9, 5, 1));

class PlaceImport : public JobFolders {
protected:
    Preparation prepare(const PlaceRequest& request) {
        return preparePlaceImport(request, tools_, now);
    }

    JobPlan plan(const PlaceRequest& request) { return std::get<JobPlan>(prepare(request)); }

    Refusal refusal(const PlaceRequest& request) { return refusalIn(prepare(request)); }

    const PlaceRequest request_{
        .searchedQuery = u"Berlin --fetch \"%@\""_s,
        .photonResponse = "{\"features\":[1,\n2]}",
        .selectedRow = 2,
        .name = u"Berlin / Mitte"_s,
        .feature = {{"type"_L1, u"Feature"_s}, {"properties"_L1, u"ä"_s}},
        .radiusIndex = 1,
        .source = u"OpenStreetMap direkt"_s,
        .isDirect = true,
        .endpoint = u" https://api.example/map\n"_s,
    };
};

} // namespace

TEST_F(PlaceImport, has_folders_and_files_of_its_own) {
    const JobPlan job = plan(request_);
    const QString folder = job.temporaryFolder.path();
    EXPECT_TRUE(QFileInfo(folder).fileName().startsWith(u"Norvaxel-Ortsimport-"_s));
    EXPECT_EQ(
        contents(folder + u"/photon-selected.json"_s),
        QByteArray(
            R"({"features":[{"properties":"ä","type":"Feature"}],"type":"FeatureCollection"})"));
    EXPECT_EQ(contents(folder + u"/photon-search.json"_s), request_.photonResponse);
    EXPECT_EQ(job.logPath, folder + u"/import.log"_s);
    EXPECT_TRUE(
        job.outputFolder.startsWith(support_ + u"/Ortsdaten/berlin-mitte-20260307-090501-"_s));
    EXPECT_EQ(job.arguments,
              placeArguments(request_, folder + u"/photon-selected.json"_s, job.outputFolder));
    EXPECT_EQ(job.requiredFiles, (QStringList{u"origin.nxd"_s, u"norvaxel3d.json"_s}));
    EXPECT_EQ(job.pointerName, u"last-import.txt"_s);
}

TEST_F(PlaceImport, gives_the_tool_its_arguments) {
    const QStringList direct{u"--fetch"_s,
                             u"--place"_s,
                             request_.searchedQuery,
                             u"--geocoder-input"_s,
                             u"/t/s.json"_s,
                             u"--result-index"_s,
                             u"1"_s,
                             u"--radius-km"_s,
                             u"0.8"_s,
                             u"--output"_s,
                             u"/o"_s,
                             u"--osm-api"_s,
                             u"--3d"_s};
    EXPECT_EQ(placeArguments(request_, u"/t/s.json"_s, u"/o"_s), direct);

    PlaceRequest overpass = request_;
    overpass.isDirect = false;
    QStringList expected = direct;
    expected.replace(11, u"--endpoint"_s);
    expected.insert(12, u"https://api.example/map"_s);
    EXPECT_EQ(placeArguments(overpass, u"/t/s.json"_s, u"/o"_s), expected);
}

TEST_F(PlaceImport, knows_four_radii) {
    const QStringList radii{u"0.4"_s, u"0.8"_s, u"1.2"_s, u"2.0"_s};
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(radiusKilometres(i), radii.at(i));
}

TEST_F(PlaceImport, records_the_choice) {
    PlaceRequest request = request_;
    request.source = u"Overpass · Alternative"_s;
    const QByteArray record = placeChoiceRecord(request);
    const QJsonObject expected{{"query"_L1, request_.searchedQuery},
                               {"selected_result"_L1, 3},
                               {"name"_L1, request_.name},
                               {"radius_km"_L1, u"0.8"_s},
                               {"source"_L1, u"Overpass · Alternative"_s},
                               {"endpoint"_L1, u"https://api.example/map"_s},
                               {"selected_feature_input"_L1, u"geocoder.json"_s},
                               {"cli_result_index"_L1, 1}};
    EXPECT_EQ(QJsonDocument::fromJson(record).object(), expected);
    EXPECT_LT(record.indexOf("\"cli_result_index\""), record.indexOf("\"endpoint\""));
    EXPECT_EQ(record.count('\n'), 10);
}

TEST_F(PlaceImport, two_imports_of_one_second_have_folders_of_their_own) {
    const JobPlan first = plan(request_);
    const JobPlan second = plan(request_);
    EXPECT_NE(first.outputFolder, second.outputFolder);
    EXPECT_NE(first.temporaryFolder.path(), second.temporaryFolder.path());
}

TEST_F(PlaceImport, refuses_without_a_stored_search_and_then_for_its_address) {
    QFile::remove(tool_);
    PlaceRequest request = request_;
    request.endpoint = u"https://user@a.b/"_s;
    for (const bool direct : {false, true}) {
        request.isDirect = direct;
        EXPECT_EQ(refusal(request), Refusal::ServiceAddress);
    }
    request.photonResponse.clear();
    EXPECT_EQ(refusal(request), Refusal::ChoiceMissing);
    request.photonResponse = request_.photonResponse;
    request.searchedQuery.clear();
    EXPECT_EQ(refusal(request), Refusal::ChoiceMissing);
    EXPECT_FALSE(QFileInfo::exists(root_.filePath(u"home"_s)));
}

#ifdef __linux__
TEST_F(PlaceImport, a_log_that_cannot_be_made_is_told_as_that) {
    for (const int error : {EACCES, ENOSPC, EMFILE}) {
        const UnmakableFile log("import.log", error);
        EXPECT_EQ(refusal(request_), Refusal::Log) << error;
    }
}
#endif

TEST_F(PlaceImport, makes_a_missing_temporary_folder) {
    QDir().rmdir(temporary_);
    EXPECT_TRUE(std::holds_alternative<JobPlan>(prepare(request_)));
}
