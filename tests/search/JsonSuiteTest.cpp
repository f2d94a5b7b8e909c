// A suite for whoever reads JSON, held against what reads the geocoder's answers: whatever comes,
// the outcome is the right rows or "not understood", and a row keeps its promises.

#include "GeoJsonCases.h"
#include "JsonCases.h"
#include "search/Photon.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace Qt::StringLiterals;
using namespace search;

namespace {

using Rows = std::optional<QList<ResultRow>>;

QByteArray bytes(std::string_view text) {
    return {text.data(), qsizetype(text.size())};
}

// A good place, with whatever members behind its own.
QByteArray feature(const QByteArray& more = {}) {
    return R"({"type":"Feature","geometry":{"type":"Point","coordinates":[13.405,52.52]},)"
           R"("properties":{"name":"Ort"})" +
           more + '}';
}

// The value in each place of an otherwise good answer.
std::vector<QByteArray> around(std::string_view text) {
    const QByteArray value = bytes(text);
    return {R"({"features":[)" + feature(",\"extra\":" + value) + "]}",
            R"({"extra":)" + value + R"(,"features":[)" + feature() + "]}",
            R"({"features":[)" + feature() + R"(],"extra":)" + value + '}',
            R"({"features":[)" + value + ',' + feature() + "]}",
            R"({"features":[)" + feature() + ',' + value + "]}"};
}

void expectPromises(const ResultRow& row) {
    static const QRegularExpression numbers(uR"(^-?\d{1,2}\.\d{4}, -?\d{1,3}\.\d{4}$)"_s);
    // No expression matches in a text that holds half a surrogate pair: only behind the address.
    const QString end = row.detail.section(u" · "_s, -1);
    EXPECT_FALSE(row.name.isEmpty());
    EXPECT_TRUE(std::isfinite(row.longitude) && std::abs(row.longitude) <= 180);
    EXPECT_TRUE(std::isfinite(row.latitude) && std::abs(row.latitude) <= 90);
    EXPECT_TRUE(numbers.match(end).hasMatch()) << row.detail.toStdString();
    const QByteArray written = QJsonDocument(row.feature).toJson(QJsonDocument::Compact);
    EXPECT_EQ(QJsonDocument::fromJson(written).object(), row.feature) << written.toStdString();
}

Rows read(const QByteArray& answer) {
    Rows rows = readPhotonAnswer(answer, u"Anfrage"_s);
    if (rows) {
        EXPECT_LE(rows->size(), mostResults);
        for (const ResultRow& row : *rows)
            expectPromises(row);
    }
    return rows;
}

// Whether the answer is that of the good place alone.
bool isTheGoodPlace(const Rows& rows) {
    return rows && rows->size() == 1 && rows->first().name == u"Ort"_s &&
           rows->first().detail == u"52.5200, 13.4050"_s;
}

void expectEverywhere(const char* name, std::string_view value, bool isUnderstood) {
    SCOPED_TRACE(name);
    for (const QByteArray& answer : around(value)) {
        const Rows rows = read(answer);
        EXPECT_TRUE(isUnderstood ? isTheGoodPlace(rows) : !rows) << answer.toStdString();
    }
    const Rows alone = read(bytes(value));
    EXPECT_TRUE(!alone || alone->isEmpty()) << "as the whole answer";
}

} // namespace

TEST(JsonSuite, what_is_json_spoils_no_answer) {
    for (const JsonCase& each : acceptedValues)
        expectEverywhere(each.name, each.text, true);
    for (const JsonString& each : acceptedStrings)
        expectEverywhere(each.name, each.text, true);
    for (const JsonNumber& each : acceptedNumbers)
        expectEverywhere(each.name, each.text, true);
}

TEST(JsonSuite, what_is_no_json_spoils_every_answer) {
    for (const JsonCase& each : rejectedValues)
        expectEverywhere(each.name, each.text, false);
}

// Here each answer may go either way, but no other.
TEST(JsonSuite, what_is_left_open_gives_the_right_rows_or_none) {
    const auto expectEither = [](const JsonCase& each) {
        SCOPED_TRACE(each.name);
        for (const QByteArray& answer : around(each.text)) {
            const Rows rows = read(answer);
            EXPECT_TRUE(!rows || isTheGoodPlace(rows)) << answer.toStdString();
        }
        read(bytes(each.text));
    };
    for (const JsonCase& each : forgivenValues)
        expectEither(each);
    for (const JsonCase& each : undefinedValues)
        expectEither(each);
}

TEST(JsonSuite, a_string_names_its_place_exactly) {
    for (const JsonString& each : acceptedStrings) {
        SCOPED_TRACE(each.name);
        const Rows rows = read(
            R"({"features":[{"geometry":{"type":"Point","coordinates":[1,2]},"properties":{"name":)" +
            bytes(each.text) + "}}]}");
        ASSERT_TRUE(rows && rows->size() == 1);
        EXPECT_EQ(rows->first().name,
                  QString::fromUtf16(each.value.data(), qsizetype(each.value.size())));
    }
}

// A name of these is no name that could be known beforehand, but it is one.
TEST(JsonSuite, a_string_that_is_left_open_names_a_place_or_spoils_the_answer) {
    const auto expectName = [](const JsonCase& each) {
        SCOPED_TRACE(each.name);
        for (const char* member : {"name", "street", "city"}) {
            const Rows rows =
                read(R"({"features":[{"geometry":{"type":"Point","coordinates":[1,2]},)"
                     R"("properties":{")" +
                     QByteArray(member) + "\":" + bytes(each.text) + "}}]}");
            EXPECT_TRUE(!rows || rows->size() == 1);
        }
    };
    for (const JsonCase& each : forgivenValues)
        expectName(each);
    for (const JsonCase& each : undefinedValues)
        expectName(each);
}

TEST(JsonSuite, a_number_is_read_exactly) {
    for (const JsonNumber& each : acceptedNumbers) {
        SCOPED_TRACE(each.name);
        const QByteArray number = bytes(each.text);
        const Rows rows = read(R"({"features":[)" + feature(",\"extra\":" + number) + "]}");
        ASSERT_TRUE(rows && rows->size() == 1);
        EXPECT_EQ(rows->first().feature.value("extra"_L1).toDouble(), each.value);
        const Rows places = read(R"({"features":[{"geometry":{"type":"Point","coordinates":[)" +
                                 number + ",0]}}]}");
        ASSERT_TRUE(places);
        ASSERT_EQ(places->size(), std::abs(each.value) <= 180 ? 1 : 0);
        for (const ResultRow& row : *places)
            EXPECT_EQ(row.longitude, each.value);
    }
}

TEST(JsonSuite, a_number_that_is_none_or_left_open_is_no_place_off_the_earth) {
    const auto expectNowhere = [](const JsonCase& each, bool mayBeRead) {
        SCOPED_TRACE(each.name);
        for (const QByteArray& position : {bytes(each.text) + ",0", "0," + bytes(each.text)}) {
            const Rows rows = read(R"({"features":[{"geometry":{"type":"Point","coordinates":[)" +
                                   position + "]}}]}");
            EXPECT_TRUE(!rows || mayBeRead);
        }
    };
    for (const JsonCase& each : rejectedValues)
        expectNowhere(each, false);
    for (const JsonCase& each : undefinedValues)
        expectNowhere(each, true);
    for (const JsonCase& each : forgivenValues)
        expectNowhere(each, true);
}

TEST(JsonSuite, each_feature_becomes_its_row_or_is_passed_over) {
    for (const GeoJsonCase& each : geoJsonFeatures) {
        SCOPED_TRACE(each.name);
        const Rows rows = read(R"({"type":"FeatureCollection","features":[)" +
                               QByteArray(each.feature) + ',' + feature() + "]}");
        ASSERT_TRUE(rows);
        QStringList details{u"52.5200, 13.4050"_s}; // of the good place behind it
        if (each.detail != none)
            details.prepend(QString::fromUtf8(each.detail));
        QStringList shown;
        for (const ResultRow& row : *rows)
            shown += row.detail;
        EXPECT_EQ(shown, details);
    }
}

TEST(JsonSuite, minus_zero_is_the_equator) {
    const Rows rows =
        read(R"({"features":[{"geometry":{"type":"Point","coordinates":[-0.0,-0]}}]})");
    ASSERT_TRUE(rows && rows->size() == 1);
    EXPECT_EQ(rows->first().latitude, 0);
    EXPECT_EQ(rows->first().longitude, 0);
}

TEST(JsonSuite, the_collections_own_members_change_nothing) {
    for (const char* members :
         {R"("type":"FeatureCollection",)", R"("type":"Feature",)", R"("type":7,)",
          R"("bbox":[-10,-10,10,10],)", R"("bbox":null,)",
          R"("crs":{"type":"name","properties":{"name":"EPSG:3857"}},)",
          R"("geometry":{"type":"Point","coordinates":[1,2]},)", R"("features":null,)",
          R"("features":[],)", R"("Features":0,"FEATURES":1,)",
          R"("properties":{"features":[1]},)"}) {
        const Rows rows = read('{' + QByteArray(members) + R"("features":[)" + feature() + "]}");
        EXPECT_TRUE(isTheGoodPlace(rows)) << members;
    }
}

TEST(JsonSuite, a_collection_whose_features_are_no_list_is_not_understood) {
    for (const char* features : {"null", "true", "0", "\"\"", "\"[]\"", "{}", "{\"0\":{}}"})
        EXPECT_FALSE(read(QByteArray(R"({"features":)") + features + '}')) << features;
    EXPECT_FALSE(read(feature())) << "one feature is no collection";
}

TEST(JsonSuite, an_answer_is_one_text_of_utf_8_and_nothing_else) {
    const QByteArray good = R"({"features":[)" + feature() + "]}";
    for (const QByteArray& understood :
         {good, ' ' + good, good + '\n', "\r\n\t " + good + " \t\r\n",
          QByteArray(100000, ' ') + good})
        EXPECT_TRUE(isTheGoodPlace(read(understood))) << understood.right(200).toStdString();
    // A mark of byte order may be ignored by who reads.
    const Rows marked = read("\xEF\xBB\xBF" + good);
    EXPECT_TRUE(!marked || isTheGoodPlace(marked));
    const auto wide = [&](int width, int at) {
        QByteArray text;
        for (const char letter : good) {
            QByteArray character(width, '\0');
            character[at] = letter;
            text += character;
        }
        return text;
    };
    for (const QByteArray& spoilt : {QByteArray(),
                                     QByteArray(" "),
                                     QByteArray("\xEF\xBB\xBF"),
                                     good + '\0',
                                     '\0' + good,
                                     "\xEF\xBB\xBF\xEF\xBB\xBF" + good,
                                     good + "\xEF\xBB\xBF",
                                     good + good,
                                     good + '\n' + good,
                                     good + ',',
                                     ',' + good,
                                     good + ';',
                                     good + '}',
                                     '{' + good,
                                     '(' + good + ')',
                                     '[' + good,
                                     '[' + good + ']',
                                     '"' + good + '"',
                                     ")]}'\n" + good,
                                     "while(1);" + good,
                                     "call(" + good + ");",
                                     "data: " + good,
                                     "\x1E" + good,
                                     good + "//",
                                     "/**/" + good,
                                     good + "\f",
                                     "\v" + good,
                                     good + "\xC2\xA0",
                                     good + '\xFF',
                                     good + "200",
                                     wide(2, 0),
                                     wide(2, 1),
                                     wide(4, 0),
                                     wide(4, 3),
                                     "\xFF\xFE" + wide(2, 0),
                                     "\xFE\xFF" + wide(2, 1),
                                     QByteArray("\x1F\x8B\x08\0\0\0\0\0", 8),
                                     QByteArray("<!DOCTYPE html><title>504</title>"),
                                     QByteArray("qbjs\x01\0\0\0", 8),
                                     QByteArray("{\"error\":\"limit\"}")})
        EXPECT_FALSE(read(spoilt)) << spoilt.left(60).toStdString();
}

TEST(JsonSuite, an_answer_that_was_cut_at_any_byte_is_not_understood) {
    QByteArray all;
    for (const JsonString& each : acceptedStrings)
        all += bytes(each.text) + ',';
    for (const JsonCase& each : acceptedValues)
        all += bytes(each.text) + ',';
    const QByteArray whole = R"({"features":[)" + feature(",\"extra\":[" + all + "0]") + "]}";
    EXPECT_TRUE(read(whole));
    for (qsizetype cut = 0; cut < whole.size(); ++cut)
        ASSERT_FALSE(readPhotonAnswer(whole.first(cut), u"Anfrage"_s)) << "cut at byte " << cut;
}

TEST(JsonSuite, depth_is_read_or_not_understood) {
    for (const int depth : {1, 100, 500, 1000})
        for (const auto& [open, close] : {std::pair("[", "]"), std::pair(R"({"a":)", "}")}) {
            const bool isObject = *open == '{';
            const QByteArray value = QByteArray(open).repeated(depth) + (isObject ? "0" : "") +
                                     QByteArray(close).repeated(depth);
            expectEverywhere("legal depth", std::string_view(value.data(), size_t(value.size())),
                             true);
        }
    // The toolkit's limit lies somewhere here.
    for (int depth = 1010; depth < 1040; ++depth) {
        const QByteArray value = QByteArray(depth, '[') + QByteArray(depth, ']');
        for (const QByteArray& answer :
             around(std::string_view(value.data(), size_t(value.size())))) {
            const Rows rows = read(answer);
            EXPECT_TRUE(!rows || isTheGoodPlace(rows)) << depth;
        }
    }
    for (const char* open : {"[", "{\"a\":", "[{\"a\":"}) {
        EXPECT_FALSE(read(QByteArray(open).repeated(100'000)));
        EXPECT_FALSE(read(R"({"features":[)" + QByteArray(open).repeated(100'000)));
    }
}

TEST(JsonSuite, size_alone_spoils_nothing) {
    QByteArray members = "{\"\":0";
    for (int i = 0; i < 20'000; ++i)
        members += ",\"" + QByteArray::number(i) + "\":null";
    const QByteArray name(500'000, 'x');
    for (const QByteArray& value :
         {'"' + name + '"', "{\"" + name + "\":0}", "0." + QByteArray(10'000, '3'), members + '}',
          '[' + QByteArray(100'000, ' ') + ']'})
        expectEverywhere("large", std::string_view(value.data(), size_t(value.size())), true);
}
