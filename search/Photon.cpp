#include "search/Photon.h"

#include "localization/NXLocal.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>

#include <cmath>

using namespace Qt::StringLiterals;

namespace search {

using localization::filled;
using localization::NXLocal;

namespace {

struct Point {
    double longitude; // degrees, -180 to 180
    double latitude;  // degrees, -90 to 90
};

std::optional<Point> pointOf(const QJsonObject& feature) {
    const QJsonObject geometry = feature.value("geometry"_L1).toObject();
    if (geometry.value("type"_L1) != "Point"_L1)
        return std::nullopt;
    const QJsonArray coordinates = geometry.value("coordinates"_L1).toArray();
    // GeoJSON order: longitude first.
    if (coordinates.size() < 2 || !coordinates.at(0).isDouble() || !coordinates.at(1).isDouble())
        return std::nullopt;
    const Point point{coordinates.at(0).toDouble(), coordinates.at(1).toDouble()};
    const bool onEarth = std::isfinite(point.longitude) && std::isfinite(point.latitude) &&
                         std::abs(point.longitude) <= 180 && std::abs(point.latitude) <= 90;
    return onEarth ? std::optional(point) : std::nullopt;
}

QStringList addressParts(const QJsonObject& properties, const QString& name) {
    QStringList parts;
    const QString street = NXText(properties.value("street"_L1));
    const QString number = NXText(properties.value("housenumber"_L1));
    if (!street.isEmpty())
        parts += number.isEmpty() ? street : filled(NXLocal(u"%@ %@"_s), {street, number});
    for (const auto key : {"postcode"_L1, "city"_L1, "county"_L1, "state"_L1, "country"_L1}) {
        const QString part = NXText(properties.value(key));
        if (!part.isEmpty() && part != name && !parts.contains(part))
            parts += part;
    }
    return parts;
}

ResultRow rowOf(const QJsonObject& feature, Point point, const QString& query) {
    const QJsonObject properties = feature.value("properties"_L1).toObject();
    const QString ownName = NXText(properties.value("name"_L1));
    const QString name = ownName.isEmpty() ? query : ownName;
    const QStringList parts = addressParts(properties, name);
    const QString separator = parts.isEmpty() ? QString() : NXLocal(u" · "_s);
    const QString detail =
        filled(NXLocal(u"%@%@%.4f, %.4f"_s),
               {parts.join(NXLocal(u", "_s)), separator, point.latitude, point.longitude});
    return {name, detail, point.longitude, point.latitude, feature};
}

} // namespace

QUrl photonQuery(const QUrl& geocoder, const QString& text) {
    // QUrlQuery would leave "+" as it is, which a server reads as a space.
    const QByteArray query =
        "q=" + QUrl::toPercentEncoding(text) + QByteArrayLiteral("&limit=8&lang=de");
    QUrl url = geocoder;
    url.setQuery(QString::fromLatin1(query), QUrl::StrictMode);
    return url;
}

std::optional<QList<ResultRow>> readPhotonAnswer(const QByteArray& body, const QString& query) {
    const QJsonValue features = QJsonDocument::fromJson(body).object().value("features"_L1);
    if (!features.isArray())
        return std::nullopt;
    QList<ResultRow> rows;
    // Element by element: only what is shown is ever unpacked, however long the answer is.
    const QJsonArray array = features.toArray();
    for (qsizetype i = 0; i < array.size() && rows.size() < mostResults; ++i) {
        const QJsonObject feature = array.at(i).toObject();
        if (const auto point = pointOf(feature))
            rows += rowOf(feature, *point, query);
    }
    return rows;
}

} // namespace search
