#pragma once

#include <QJsonObject>
#include <QString>

namespace search {

// One place that the geocoder offers, as the list shows it and as a job hands it on.
struct ResultRow {
    QString name;        // what the place is called; the query itself where it has no name
    QString detail;      // address parts, then latitude and longitude with four decimals
    double longitude;    // degrees, -180 to 180
    double latitude;     // degrees, -90 to 90
    QJsonObject feature; // the GeoJSON feature (RFC 7946) exactly as received

    bool operator==(const ResultRow&) const = default;
};

} // namespace search
