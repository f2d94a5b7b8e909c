#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace jobs {

// The most stations that a route has.
inline constexpr qsizetype mostStations = 32;

// One stop of a route.
struct Station {
    QString name;
    QString detail;
    double lon; // degrees, -180 to 180
    double lat; // degrees, -90 to 90

    bool operator==(const Station&) const = default;
};

// The stations of a route in the order in which they are visited: the first is the start, the last
// the destination. The same place may stand in it twice. Each edit does nothing and returns nothing
// where it is not possible, else it returns the row that is to be selected next, -1 for none.
// Pure; any thread that owns it.
class StationList {
public:
    const QList<Station>& stations() const { return stations_; }
    qsizetype size() const { return stations_.size(); }

    // At the end, up to `mostStations`; not what is nowhere on earth.
    std::optional<int> add(const Station& station);
    std::optional<int> remove(int row);
    // Exchanges the station with the one `offset` places away.
    std::optional<int> move(int row, int offset);

private:
    bool holds(int row) const { return row >= 0 && row < stations_.size(); }

    QList<Station> stations_;
};

} // namespace jobs
