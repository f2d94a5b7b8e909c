#include "app/PlaceRows.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace app;

TEST(PlaceRows, show_a_place_as_it_was_found) {
    const auto rows = rowsOf(QList<search::ResultRow>{{u"Ulm"_s, u"48.4, 10.0"_s, 10, 48.4, {}}},
                             Qt::LeftToRight);
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0].name, u"Ulm"_s);
    EXPECT_EQ(rows[0].detail, u"48.4, 10.0"_s);
}

TEST(PlaceRows, number_the_stations_from_one) {
    const auto rows = rowsOf(
        QList<jobs::Station>{{u"%@"_s, u"a"_s, 1, 2}, {u"Ulm"_s, u"b"_s, 3, 4}}, Qt::LeftToRight);
    ASSERT_EQ(rows.size(), 2);
    EXPECT_EQ(rows[0].name, u"1 · %@"_s);
    EXPECT_EQ(rows[0].detail, u"a"_s);
    EXPECT_EQ(rows[1].name, u"2 · Ulm"_s);
}
