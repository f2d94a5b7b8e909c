#include "search/Photon.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace search;

namespace {

QByteArray point(const char* coordinates, const char* properties = "{\"name\":\"Ort\"}") {
    return QByteArray(R"({"type":"Feature","geometry":{"type":"Point","coordinates":)") +
           coordinates + R"(},"properties":)" + properties + "}";
}

QByteArray answer(const QByteArrayList& features) {
    return R"({"type":"FeatureCollection","features":[)" + features.join(',') + "]}";
}

QList<ResultRow> rowsOf(const QByteArray& body, const QString& query = u"Anfrage"_s) {
    return readPhotonAnswer(body, query).value();
}

ResultRow rowOf(const char* properties) {
    return rowsOf(answer({point("[13.405,52.52]", properties)})).value(0);
}

QByteArray addressFor(const QString& text) {
    return photonQuery(QUrl(u"https://geo.example/api/"_s), text).toEncoded();
}

} // namespace

TEST(PhotonQuery, has_three_items_in_order) {
    EXPECT_EQ(addressFor(u"Berlin"_s), "https://geo.example/api/?q=Berlin&limit=8&lang=de");
}

TEST(PhotonQuery, every_character_arrives_as_typed) {
    EXPECT_EQ(addressFor(u"C++ & #1 100% ä 東京 🎬"_s),
              "https://geo.example/api/?q=C%2B%2B%20%26%20%231%20100%25%20%C3%A4%20"
              "%E6%9D%B1%E4%BA%AC%20%F0%9F%8E%AC&limit=8&lang=de");
    EXPECT_EQ(addressFor(u"a=b;c/d?e%2B"_s),
              "https://geo.example/api/?q=a%3Db%3Bc%2Fd%3Fe%252B&limit=8&lang=de");
}

TEST(NXText, trims_texts_and_drops_everything_else) {
    EXPECT_EQ(NXText(QJsonValue(u" \n\tBerlin \u00a0\n"_s)), u"Berlin"_s);
    for (const QJsonValue& value : {QJsonValue(1), QJsonValue(true), QJsonValue()})
        EXPECT_EQ(NXText(value), QString());
}

TEST(PhotonAnswer, twenty_valid_features_yield_the_first_eight_in_order) {
    QByteArrayList features;
    for (int i = 0; i < 20; ++i)
        features += point("[1,2]", QByteArray("{\"name\":\"N" + QByteArray::number(i) + "\"}"));
    const auto rows = rowsOf(answer(features));
    ASSERT_EQ(rows.size(), 8);
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(rows.at(i).name, u"N%1"_s.arg(i));
}

TEST(PhotonAnswer, unusable_features_are_skipped_and_do_not_count) {
    const QByteArrayList unusable{
        R"({"geometry":{"type":"LineString","coordinates":[[1,2],[3,4]]},"properties":{}})",
        R"({"geometry":{"type":"point","coordinates":[1,2]},"properties":{}})",
        R"({"geometry":{"coordinates":[1,2]},"properties":{}})",
        R"({"geometry":null,"properties":{"name":"X"}})",
        R"({"properties":{"name":"X"}})",
        point("[1]"),
        point("[]"),
        point("{}"),
        point("[\"1\",2]"),
        point("[1,\"2\"]"),
        point("[true,2]"),
        point("[1,null]"),
        point("[1,91]"),
        point("[1,-90.0001]"),
        point("[180.5,1]"),
        point("[-181,1]"),
        "17",
        "null",
        "\"text\"",
        "[]",
    };
    for (const QByteArray& feature : unusable)
        EXPECT_TRUE(rowsOf(answer({feature})).isEmpty()) << feature.constData();
    QByteArrayList mixed = unusable;
    for (int i = 0; i < 8; ++i)
        mixed += point("[1,2]");
    EXPECT_EQ(rowsOf(answer(mixed)).size(), 8);
}

TEST(PhotonAnswer, the_edges_of_the_earth_are_accepted) {
    EXPECT_EQ(rowsOf(answer({point("[-180,90]")})).value(0).detail, u"90.0000, -180.0000"_s);
    EXPECT_EQ(rowsOf(answer({point("[180,-90]")})).value(0).detail, u"-90.0000, 180.0000"_s);
    EXPECT_EQ(rowsOf(answer({point("[1,2,300]")})).size(), 1);
}

TEST(PhotonAnswer, a_feature_without_properties_is_named_like_the_query) {
    for (
        const char* feature :
        {R"({"geometry":{"type":"Point","coordinates":[13.405,52.52]}})",
         R"({"geometry":{"type":"Point","coordinates":[13.405,52.52]},"properties":[1]})",
         R"({"geometry":{"type":"Point","coordinates":[13.405,52.52]},"properties":{"name":" "}})",
         R"({"geometry":{"type":"Point","coordinates":[13.405,52.52]},"properties":{"name":7}})"}) {
        const auto row = rowsOf(answer({feature})).value(0);
        EXPECT_EQ(row.name, u"Anfrage"_s);
        EXPECT_EQ(row.detail, u"52.5200, 13.4050"_s);
    }
}

TEST(PhotonAnswer, details_are_built_from_the_address) {
    struct Case {
        const char* properties;
        const char* detail;
    };
    const Case cases[] = {
        {R"({"name":"A","street":"Hauptstraße","housenumber":"5","postcode":"10115","city":"Berlin","country":"Deutschland"})",
         "Hauptstraße 5, 10115, Berlin, Deutschland · 52.5200, 13.4050"},
        {R"({"name":"A","street":"Hauptstraße","housenumber":" "})",
         "Hauptstraße · 52.5200, 13.4050"},
        {R"({"name":"A","housenumber":"5"})", "52.5200, 13.4050"},
        {R"({"name":"Berlin","city":"Berlin","state":"Berlin","country":"Deutschland"})",
         "Deutschland · 52.5200, 13.4050"},
        {R"({"name":"Berlin","street":"Berlin"})", "Berlin · 52.5200, 13.4050"},
        {R"({"name":"A","city":"B","county":"B","state":"b"})", "B, b · 52.5200, 13.4050"},
        {R"({"name":"A","postcode":10115,"city":" C\n"})", "C · 52.5200, 13.4050"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(rowOf(c.properties).detail, QString::fromUtf8(c.detail)) << c.properties;
}

TEST(PhotonAnswer, foreign_text_is_never_taken_for_a_placeholder) {
    const auto row =
        rowOf(R"({"name":"%@ %1","street":"%@ %.4f %lu","housenumber":"%1 %@","city":"%2"})");
    EXPECT_EQ(row.name, u"%@ %1"_s);
    EXPECT_EQ(row.detail, u"%@ %.4f %lu %1 %@, %2 · 52.5200, 13.4050"_s);
}

TEST(PhotonAnswer, foreign_text_is_kept_as_it_is) {
    const auto row =
        rowOf(R"({"name":"<b>A & B</b>\u202e\u0007 🎬","city":"<img src='file:///etc/passwd'>"})");
    EXPECT_EQ(row.name, u"<b>A & B</b>\u202e\u0007 🎬"_s);
    EXPECT_TRUE(row.detail.startsWith(u"<img src='file:///etc/passwd'> · "_s));
}

TEST(PhotonAnswer, the_feature_is_kept_as_received) {
    const QByteArray feature =
        R"({"geometry":{"coordinates":[13.38885990000001,52.5170365,34],"type":"Point"},)"
        R"("properties":{"extent":[1,2.5,-3e-07],"name":"Berlin","osm_id":9007199254740993},"type":"Feature"})";
    const auto row = rowsOf(answer({feature})).value(0);
    EXPECT_EQ(QJsonDocument(row.feature).toJson(QJsonDocument::Compact).toStdString(),
              feature.toStdString());
}

TEST(PhotonAnswer, what_the_toolkits_numbers_cannot_hold_is_kept_as_near_as_they_can) {
    const auto row =
        rowsOf(answer({R"({"geometry":{"type":"Point","coordinates":[1,2]},)"
                       R"("huge":12345678901234567890,"zero":-0,"twice":1,"twice":2})"}))
            .value(0);
    EXPECT_EQ(QJsonDocument(row.feature).toJson(QJsonDocument::Compact).toStdString(),
              R"({"geometry":{"coordinates":[1,2],"type":"Point"},)"
              R"("huge":12345678901234567000,"twice":2,"zero":0})");
}

TEST(PhotonAnswer, an_answer_of_another_shape_is_unreadable) {
    for (const QByteArray& body :
         {QByteArray(), QByteArray("{}"), QByteArray("[]"), QByteArray(R"({"features":{}})"),
          QByteArray(R"([{"features":[]}])"), QByteArray(R"({"features":null})"),
          QByteArray(R"({"features":"[]"})"), QByteArray("<html></html>"), QByteArray("\0\0", 2),
          QByteArray(R"({"features":[],"a":1e400})"), QByteArray(R"({"features":[],"a":1e-400})"),
          QByteArray(R"({"features":[{"geometry")"), QByteArray("{\"features\":[\"\xff\xfe\"]}"),
          QByteArray(2000, '[') + QByteArray(2000, ']'),
          QByteArray(R"({"features":)") + QByteArray(100000, '[')})
        EXPECT_FALSE(readPhotonAnswer(body, u"x"_s)) << body.left(60).constData();
}

TEST(PhotonAnswer, an_empty_features_array_yields_no_rows) {
    EXPECT_TRUE(rowsOf(R"({"features":[]})").isEmpty());
}

TEST(PhotonAnswer, a_hundred_thousand_features_yield_eight_rows) {
    QByteArray body = R"({"features":[)";
    for (int i = 0; i < 100000; ++i)
        body += "{},";
    for (int i = 0; i < 9; ++i)
        body += point("[1,2]") + ',';
    body.chop(1);
    EXPECT_EQ(rowsOf(body + "]}").size(), 8);
}

TEST(PhotonAnswer, broken_bodies_never_do_more_than_fail) {
    const QByteArray whole = answer({point("[13.4,52.5]", R"({"name":"Müßig","street":"S"})")});
    for (qsizetype cut = 0; cut < whole.size(); ++cut)
        EXPECT_FALSE(readPhotonAnswer(whole.first(cut), u"x"_s));
    for (qsizetype at = 0; at < whole.size(); ++at) {
        for (const char byte : {'\0', '"', '{', ']', '\xff', '9'}) {
            QByteArray changed = whole;
            changed[at] = byte;
            EXPECT_LE(readPhotonAnswer(changed, u"x"_s).value_or(QList<ResultRow>()).size(), 1);
        }
    }
}
