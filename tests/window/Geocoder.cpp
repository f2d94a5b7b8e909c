#include "Geocoder.h"

#include "WaitUntil.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QUrlQuery>

#include <fcntl.h>
#include <sys/stat.h>

Geocoder& Geocoder::shared() {
    // Owned by the test framework, like every environment.
    static auto* const one = new Geocoder;
    [[maybe_unused]] static const auto* const registered = testing::AddGlobalTestEnvironment(one);
    return *one;
}

void Geocoder::SetUp() {
    folder_ = std::make_unique<TemporaryFolder>();
    forgotten_ = 0;
    ASSERT_EQ(mkfifo(file("input").c_str(), 0600), 0);
    // For reading, too: opening a pipe that has no reader yet would block.
    input_.reset(open(file("input").c_str(), O_RDWR | O_CLOEXEC));
    ASSERT_TRUE(input_);
    QProcess process;
    process.setProgram(QStringLiteral(SANDBOX "/geocoder"));
    process.setArguments({u"--folder"_s, QString::fromStdString(file("server")), u"--behaviour"_s,
                          QString::fromStdString(file("behaviour.json"))});
    process.setStandardInputFile(QString::fromStdString(file("input")));
    process.setStandardOutputFile(QString::fromStdString(file("output")));
    ASSERT_TRUE(process.startDetached());

    QByteArray output;
    ASSERT_TRUE(waitUntil([&] {
        output = QByteArray::fromStdString(contentOf(file("output")));
        return output.endsWith('\n');
    })) << "the geocoder does not start";
    const QByteArray port = output.mid(output.indexOf(' ') + 1).trimmed();
    qputenv("https_proxy", "http://127.0.0.1:" + port);
    qputenv("no_proxy", "");
    qputenv("CURL_CA_BUNDLE", file("server/authority.pem").c_str());
}

void Geocoder::TearDown() {
    input_.reset();
    folder_.reset();
}

void Geocoder::reset() {
    behaviours_ = {};
    std::filesystem::remove(file("behaviour.json"));
    forgotten_ = qsizetype(contentOf(file("server/requests.jsonl")).size());
}

void Geocoder::behave(const QJsonObject& behaviour, const QString& query) {
    behaviours_.insert(query, behaviour);
    write(file("behaviour.new"), QJsonDocument(behaviours_).toJson().toStdString());
    std::filesystem::rename(file("behaviour.new"), file("behaviour.json"));
}

QList<QJsonObject> Geocoder::records(const char* kind) const {
    QList<QJsonObject> found;
    const auto all = QByteArray::fromStdString(contentOf(file("server/requests.jsonl")));
    for (const QByteArray& line : all.sliced(forgotten_).split('\n')) {
        const QJsonObject record = QJsonDocument::fromJson(line).object();
        if (record.value("kind"_L1) == QLatin1StringView(kind))
            found += record;
    }
    return found;
}

QStringList Geocoder::asked() const {
    QStringList texts;
    for (const QJsonObject& request : records("request")) {
        const QUrlQuery query(request.value("query"_L1).toString());
        texts += query.queryItemValue(u"q"_s, QUrl::FullyDecoded);
    }
    return texts;
}

QJsonObject feature(const QString& name, const QJsonObject& properties, double longitude,
                    double latitude) {
    QJsonObject all = properties;
    all.insert("name"_L1, name);
    return {{"type"_L1, "Feature"_L1},
            {"properties"_L1, all},
            {"geometry"_L1, QJsonObject{{"type"_L1, "Point"_L1},
                                        {"coordinates"_L1, QJsonArray{longitude, latitude}}}}};
}

QJsonObject answer(const QList<QJsonObject>& places) {
    QJsonArray features;
    for (const QJsonObject& each : places)
        features.append(each);
    return {{"type"_L1, "FeatureCollection"_L1}, {"features"_L1, features}};
}

QJsonObject withBody(const QJsonObject& body) {
    return {{"body"_L1, QString::fromUtf8(QJsonDocument(body).toJson(QJsonDocument::Compact))}};
}
