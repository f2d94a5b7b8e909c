#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QString>
#include <QUrl>

#include <optional>

// What the geocoder is asked, and what it answers.
namespace search {

// The text without leading and trailing white space and line breaks. Pure; any thread.
inline QString NXText(const QString& text) {
    return text.trimmed();
}

// The same for a JSON value; empty for everything that is not a text. Pure; any thread.
inline QString NXText(const QJsonValue& value) {
    return value.toString().trimmed();
}

// The longest query that is sent, in UTF-16 code units.
inline constexpr qsizetype longestQuery = 300;

// The address of one search: `geocoder` with the items q, limit and lang, in this order. The text
// is percent-encoded completely, so that the server reads it as it was typed ("+" included). The
// answer's language is German whatever the interface speaks: the importer's files are German. Pure;
// any thread.
QUrl photonQuery(const QUrl& geocoder, const QString& text);

// One place that the geocoder offers, as the list shows it and as a job hands it on.
struct ResultRow {
    QString name;        // what the place is called; the query itself where it has no name
    QString detail;      // address parts, then latitude and longitude with four decimals
    double longitude;    // degrees, -180 to 180
    double latitude;     // degrees, -90 to 90
    QJsonObject feature; // the GeoJSON feature (RFC 7946) exactly as received

    bool operator==(const ResultRow&) const = default;
};

// The most rows that one search shows.
inline constexpr qsizetype mostResults = 8;

// Understands a Photon answer: a GeoJSON feature collection (RFC 7946) whose features are points.
// Returns at most `mostResults` rows in the answer's order; features that are not usable points
// are left out. Nothing is returned when the body is no JSON object with a `features` array.
// `query` is the trimmed search text: the name of a place that has none. Pure; any thread.
std::optional<QList<ResultRow>> readPhotonAnswer(const QByteArray& body, const QString& query);

// Why a search brought no places.
enum class SearchFailure {
    AddressRefused, // the geocoder's address may not be asked
    NotStarted,     // curl could not be started
    Unreadable,     // curl's output could not be read
    TooLarge,       // more than maximumBodySize
    CurlTimedOut,   // curl gave up waiting
    TimedOut,       // curl did not even give up
    NotResponding,  // the server answered, but not with status 200
    Unreachable,    // no connection, or anything else that made curl fail
    NotUnderstood,  // the answer is no collection of places
};

// Says a failure in the person's language. Any thread.
using FailureText = QString (*)(SearchFailure);

} // namespace search
