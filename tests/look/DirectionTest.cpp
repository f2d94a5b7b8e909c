#include "look/text/Direction.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(Direction, is_that_of_the_first_strong_letter) {
    EXPECT_EQ(look::ownDirection(u"12 Ulm مراكش"_s, Qt::RightToLeft), Qt::LeftToRight);
    EXPECT_EQ(look::ownDirection(u"12 مراكش Ulm"_s, Qt::LeftToRight), Qt::RightToLeft);
    EXPECT_EQ(look::ownDirection(u"ירושלים"_s, Qt::LeftToRight), Qt::RightToLeft);
    for (const auto otherwise : {Qt::LeftToRight, Qt::RightToLeft})
        EXPECT_EQ(look::ownDirection(u"31.6258, -7.9891"_s, otherwise), otherwise);
}

TEST(Direction, a_letter_from_the_right_is_found_anywhere) {
    EXPECT_FALSE(look::holdsRightToLeft(u"Ulm 12"_s));
    EXPECT_TRUE(look::holdsRightToLeft(u"Ulm م"_s));
    EXPECT_TRUE(look::holdsRightToLeft(u"ש"_s));
}

TEST(Direction, a_text_is_set_apart_only_where_something_reads_from_the_right) {
    EXPECT_EQ(look::within(u"Fehler: %@"_s, u"HTTP 504"_s), u"HTTP 504"_s);
    EXPECT_EQ(look::within(u"Fehler: %@"_s, u"مراكش"_s), look::isolated(u"مراكش"_s));
    EXPECT_EQ(look::within(u"فشل: %@"_s, u"HTTP 504"_s), look::isolated(u"HTTP 504"_s));
    EXPECT_EQ(look::isolated(u"a"_s), u"\u2068a\u2069"_s);
    EXPECT_EQ(look::isolatedLeftToRight(u"a"_s), u"\u2066a\u2069"_s);
}
