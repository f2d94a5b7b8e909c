// The edits of a route, one on each line, held against the plainest list there is: "a" and two
// numbers adds a station (longitude, latitude), "r" and a number removes one, "m" and two numbers
// moves one.

#include "jobs/StationList.h"
#include "tests/fuzz/Input.h"

#include <cmath>
#include <vector>

namespace {

using jobs::Station;

// What is to be selected next, by the rule; nothing where nothing may happen.
std::optional<int> add(std::vector<Station>& list, const Station& station) {
    const bool isOnEarth = station.lon >= -180 && station.lon <= 180 && station.lat >= -90 &&
                           station.lat <= 90; // never true of what is no number
    if (!isOnEarth || list.size() == 32)
        return std::nullopt;
    list.push_back(station);
    return int(list.size()) - 1;
}

std::optional<int> remove(std::vector<Station>& list, int row) {
    if (row < 0 || row >= int(list.size()))
        return std::nullopt;
    list.erase(list.begin() + row);
    return row == int(list.size()) ? row - 1 : row;
}

std::optional<int> move(std::vector<Station>& list, int row, int offset) {
    const int other = row + offset;
    if (row < 0 || other < 0 || row >= int(list.size()) || other >= int(list.size()))
        return std::nullopt;
    const Station moved = list[std::size_t(row)];
    list[std::size_t(row)] = list[std::size_t(other)];
    list[std::size_t(other)] = moved;
    return other;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using fuzz::require;
    jobs::StationList list;
    std::vector<Station> expected;
    for (const QByteArray& line : fuzz::bytes(data, size).split('\n')) {
        const QList<QByteArray> words = line.split(' ') + QList<QByteArray>{"", ""};
        const Station station{QString::fromUtf8(line), QString(), words.at(1).toDouble(),
                              words.at(2).toDouble()};
        const int row = words.at(1).toInt();
        const int offset = words.at(2).toShort(); // buttons ask for one place up or down
        if (words.first() == "a")
            require(list.add(station) == add(expected, station), "a station is added by the rule");
        if (words.first() == "r")
            require(list.remove(row) == remove(expected, row), "a station is removed by the rule");
        if (words.first() == "m" && std::abs(row) < 1000)
            require(list.move(row, offset) == move(expected, row, offset),
                    "a station is moved by the rule");
        require(std::equal(list.stations().begin(), list.stations().end(), expected.begin(),
                           expected.end()),
                "the stations are those that were chosen, in their order");
    }
    return 0;
}
