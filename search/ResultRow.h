#pragma once

#include <QJsonObject>
#include <QString>

namespace search {

// One place that the geocoder offers, as the list shows it and as an import hands it on.
struct ResultRow {
    QString name;        // what the place is called; the query itself where it has no name
    QString detail;      // address parts, then latitude and longitude with four decimals
    QJsonObject feature; // the GeoJSON feature (RFC 7946) exactly as received

    bool operator==(const ResultRow&) const = default;
};

} // namespace search
