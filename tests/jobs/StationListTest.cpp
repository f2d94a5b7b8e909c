#include "jobs/StationList.h"

#include <gtest/gtest.h>

#include <limits>

using namespace Qt::StringLiterals;
using namespace jobs;

namespace {

Station named(const QString& name) {
    return {name, {}, 1, 2};
}

QStringList namesOf(const StationList& list) {
    QStringList names;
    for (const Station& station : list.stations())
        names += station.name;
    return names;
}

StationList listOf(const QStringList& names) {
    StationList list;
    for (const QString& name : names)
        EXPECT_TRUE(list.add(named(name)));
    return list;
}

} // namespace

TEST(StationList, accepts_the_edges_of_the_earth_and_nothing_beyond) {
    constexpr double nowhere = std::numeric_limits<double>::quiet_NaN();
    constexpr double endless = std::numeric_limits<double>::infinity();
    struct Case {
        double lon, lat;
        bool isOnEarth;
    };
    for (const Case& c : {Case{180, -90, true},
                          {-180, 90, true},
                          {0, 0, true},
                          {200, 10, false},
                          {10, 95, false},
                          {-180.5, 0, false},
                          {0, -90.5, false},
                          {nowhere, 0, false},
                          {0, nowhere, false},
                          {endless, 0, false},
                          {0, -endless, false}}) {
        StationList list;
        EXPECT_EQ(list.add({u"a"_s, u"b"_s, c.lon, c.lat}).has_value(), c.isOnEarth)
            << c.lon << ' ' << c.lat;
        EXPECT_EQ(list.size(), c.isOnEarth ? 1 : 0);
    }
}

TEST(StationList, takes_up_to_32_and_ignores_the_33rd) {
    StationList list;
    for (int i = 0; i < 32; ++i)
        EXPECT_EQ(list.add(named(QString::number(i))), i);
    EXPECT_EQ(list.add(named(u"33"_s)), std::nullopt);
    EXPECT_EQ(list.size(), 32);
    EXPECT_EQ(list.stations().last().name, u"31"_s);
}

TEST(StationList, the_same_place_may_stand_twice) {
    EXPECT_EQ(namesOf(listOf({u"a"_s, u"b"_s, u"a"_s})), (QStringList{u"a"_s, u"b"_s, u"a"_s}));
}

TEST(StationList, removing_selects_the_same_row_or_the_last) {
    struct Case {
        int row;
        std::optional<int> selected;
        QStringList left;
    };
    for (const Case& c : {Case{0, 0, {u"b"_s, u"c"_s}},
                          {1, 1, {u"a"_s, u"c"_s}},
                          {2, 1, {u"a"_s, u"b"_s}},
                          {-1, std::nullopt, {u"a"_s, u"b"_s, u"c"_s}},
                          {3, std::nullopt, {u"a"_s, u"b"_s, u"c"_s}}}) {
        StationList list = listOf({u"a"_s, u"b"_s, u"c"_s});
        EXPECT_EQ(list.remove(c.row), c.selected) << c.row;
        EXPECT_EQ(namesOf(list), c.left) << c.row;
    }
}

TEST(StationList, removing_the_only_station_selects_nothing) {
    StationList list = listOf({u"a"_s});
    EXPECT_EQ(list.remove(0), -1);
    EXPECT_EQ(list.size(), 0);
    EXPECT_EQ(list.remove(0), std::nullopt);
}

TEST(StationList, moving_exchanges_two_neighbours_within_the_list) {
    struct Case {
        int row, offset;
        std::optional<int> selected;
        QStringList order;
    };
    const QStringList same{u"a"_s, u"b"_s, u"c"_s};
    for (const Case& c : {Case{1, -1, 0, {u"b"_s, u"a"_s, u"c"_s}},
                          {1, 1, 2, {u"a"_s, u"c"_s, u"b"_s}},
                          {0, -1, std::nullopt, same},
                          {2, 1, std::nullopt, same},
                          {-1, 1, std::nullopt, same},
                          {3, -1, std::nullopt, same}}) {
        StationList list = listOf(same);
        EXPECT_EQ(list.move(c.row, c.offset), c.selected) << c.row << ' ' << c.offset;
        EXPECT_EQ(namesOf(list), c.order) << c.row << ' ' << c.offset;
    }
}
