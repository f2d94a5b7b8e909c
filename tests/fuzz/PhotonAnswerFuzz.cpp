// The bytes that a geocoder answers with.
// At most 4096 bytes: eight real places and a few more.

#include "app/PlaceRows.h"
#include "jobs/StationList.h"
#include "search/Photon.h"
#include "tests/fuzz/Input.h"
#include "tests/fuzz/StrictJson.h"

#include <QJsonDocument>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

using fuzz::isNumber;
using fuzz::isText;
using fuzz::require;
using search::ResultRow;

// What was typed: the name of a place that has none, and now and then a city's.
const QString& query() {
    static const QString typed = u"Ulm"_s;
    return typed;
}

QString trimmed(const QVariant& value) {
    return isText(value) ? fuzz::withoutBlankEnds(value.toString()) : QString();
}

QString fourDecimals(double latitude, double longitude) {
    std::array<char, 64> text;
    std::snprintf(text.data(), text.size(), "%.4f, %.4f", latitude, longitude);
    return QString::fromLatin1(text.data());
}

QString naiveDetail(const QVariantMap& properties, const QString& name, const QString& place) {
    QString parts = trimmed(properties[u"street"_s]);
    const QString number = trimmed(properties[u"housenumber"_s]);
    if (!parts.isEmpty() && !number.isEmpty())
        parts += u' ' + number;
    QStringList shown{name};
    if (!parts.isEmpty())
        shown << parts;
    for (const char16_t* key : {u"postcode", u"city", u"county", u"state", u"country"}) {
        const QString part = trimmed(properties[QString::fromUtf16(key)]);
        if (part.isEmpty() || std::ranges::count(shown, part) > 0)
            continue;
        shown << part;
        parts += (parts.isEmpty() ? u""_s : u", "_s) + part;
    }
    return parts.isEmpty() ? place : parts + u" · "_s + place;
}

struct NaiveRow {
    QString name;
    QString detail;
    double longitude;
    double latitude;
    QVariantMap feature;
};

std::optional<NaiveRow> naiveRow(const QVariant& element) {
    const QVariantMap feature = element.toMap();
    const QVariantMap geometry = feature[u"geometry"_s].toMap();
    const QVariantList numbers = geometry[u"coordinates"_s].toList();
    if (!isText(geometry[u"type"_s]) || geometry[u"type"_s].toString() != "Point"_L1 ||
        numbers.size() < 2 || !isNumber(numbers[0]) || !isNumber(numbers[1]))
        return std::nullopt;
    const double longitude = numbers[0].toDouble();
    const double latitude = numbers[1].toDouble();
    if (!(longitude >= -180 && longitude <= 180 && latitude >= -90 && latitude <= 90))
        return std::nullopt;
    const QVariantMap properties = feature[u"properties"_s].toMap();
    QString name = trimmed(properties[u"name"_s]);
    if (name.isEmpty())
        name = query();
    return NaiveRow{name, naiveDetail(properties, name, fourDecimals(latitude, longitude)),
                    longitude, latitude, feature};
}

std::optional<std::vector<NaiveRow>> naiveRows(const QVariant& answer) {
    const QVariant features = answer.toMap()[u"features"_s];
    if (!fuzz::isList(features))
        return std::nullopt;
    std::vector<NaiveRow> rows;
    for (const QVariant& element : features.toList())
        if (const auto row = naiveRow(element); row && rows.size() < 8)
            rows.push_back(*row);
    return rows;
}

QString withoutIsolates(QString text) {
    for (const char16_t sign : {u'\u2066', u'\u2068', u'\u2069'})
        text.remove(sign);
    return text;
}

void checkRow(const ResultRow& row, const NaiveRow& naive) {
    require(row.name == naive.name, "a place has its name, or that of the search");
    require(row.detail == naive.detail, "each part of the address once, then the coordinates");
    require(row.longitude == naive.longitude && row.latitude == naive.latitude,
            "a place lies where the geocoder says");
    require(row.feature.toVariantMap() == naive.feature, "a feature is kept as received");
    jobs::StationList stations;
    require(stations.add({row.name, row.detail, row.longitude, row.latitude}).has_value(),
            "a place that is shown can be a station");
}

// What the lists of the window make of the rows, whatever way the window reads.
void checkLists(const QList<ResultRow>& rows) {
    for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        const QList<look::PlaceRow> shown = app::rowsOf(rows, direction);
        require(shown.size() == rows.size(), "the list shows each row");
        for (qsizetype row = 0; row < rows.size(); ++row)
            require(shown[row].name == rows[row].name &&
                        withoutIsolates(shown[row].detail) == withoutIsolates(rows[row].detail),
                    "the list shows a row's own words");
    }
}

} // namespace

// The words between the parts are those of the person's language; the naive rows speak German.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    ::unsetenv("HOME");
    return ::setenv("LANGUAGE", "de", 1);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray body = fuzz::bytes(data, size);
    const auto rows = search::readPhotonAnswer(body, query());
    // Where the toolkit takes more than the standard has, its reading counts: only the rules of the
    // rows are held against it then.
    const std::optional<QVariant> strict = fuzz::StrictJson::read(body);
    const auto naive = naiveRows(strict ? *strict : QJsonDocument::fromJson(body).toVariant());
    require(rows.has_value() == naive.has_value(), "an answer is a collection of features");
    if (!rows)
        return 0;
    require(rows->size() == qsizetype(naive->size()), "each usable feature up to eight is a row");
    for (qsizetype row = 0; row < rows->size(); ++row)
        checkRow(rows->at(row), (*naive)[std::size_t(row)]);
    checkLists(*rows);
    return 0;
}
