#include "jobs/StationList.h"

#include <QJsonArray>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace jobs {
namespace {

bool isWithin(double degrees, double limit) {
    return std::isfinite(degrees) && std::abs(degrees) <= limit;
}

} // namespace

std::optional<Station> stationOf(const QString& name, const QString& detail,
                                 const QJsonObject& feature) {
    const QJsonArray coordinates =
        feature.value("geometry"_L1).toObject().value("coordinates"_L1).toArray();
    if (coordinates.size() < 2)
        return std::nullopt;
    // What is not a number is nowhere, rather than at 0.
    const double lon = coordinates.at(0).toDouble(qQNaN());
    const double lat = coordinates.at(1).toDouble(qQNaN());
    if (!isWithin(lon, 180) || !isWithin(lat, 90))
        return std::nullopt;
    return Station{name, detail, lon, lat};
}

std::optional<int> StationList::add(const Station& station) {
    if (stations_.size() >= mostStations)
        return std::nullopt;
    stations_.append(station);
    return int(stations_.size()) - 1;
}

std::optional<int> StationList::remove(int row) {
    if (!holds(row))
        return std::nullopt;
    stations_.removeAt(row);
    return std::min(row, int(stations_.size()) - 1);
}

std::optional<int> StationList::move(int row, int offset) {
    if (!holds(row) || !holds(row + offset))
        return std::nullopt;
    stations_.swapItemsAt(row, row + offset);
    return row + offset;
}

} // namespace jobs
