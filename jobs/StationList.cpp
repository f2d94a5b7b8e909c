#include "jobs/StationList.h"

#include <algorithm>
#include <cmath>

namespace jobs {
namespace {

bool isWithin(double degrees, double limit) {
    return std::isfinite(degrees) && std::abs(degrees) <= limit;
}

} // namespace

std::optional<int> StationList::add(const Station& station) {
    if (stations_.size() >= mostStations || !isWithin(station.lon, 180) ||
        !isWithin(station.lat, 90))
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
