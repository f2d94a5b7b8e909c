#include "localization/NXLocal.h"

#include <QLocale>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <limits>
using namespace localization;

namespace {

std::string filledText(QStringView format, std::initializer_list<FormatArgument> arguments) {
    return filled(format, arguments).toStdString();
}

TEST(FilledText, placeholders_take_the_arguments_in_their_order) {
    EXPECT_EQ(filledText(u"%@ %@", {QStringView(u"Bahnhofstraße"), QStringView(u"7")}),
              "Bahnhofstraße 7");
    EXPECT_EQ(filledText(u"%ld · %@", {3, QStringView(u"Köln")}), "3 · Köln");
    EXPECT_EQ(filledText(u"Stops · %lu / 32", {std::size_t(2)}), "Stops · 2 / 32");
    EXPECT_EQ(filledText(u"%@%@%.4f, %.4f",
                         {QStringView(u"Köln"), QStringView(u" · "), 50.94128, 6.95829}),
              "Köln · 50.9413, 6.9583");
    EXPECT_EQ(filledText(u"%@", {QString()}), "");
    EXPECT_EQ(filledText(u"ohne", {}), "ohne");
    EXPECT_EQ(filledText(u"", {}), "");
}

TEST(FilledText, what_an_argument_brings_along_is_shown_literally) {
    EXPECT_EQ(
        filledText(u"%@ %@", {QStringView(u"%@ %1 %lu %%"), QStringView(u"%.4f %2 &amp; <b>")}),
        "%@ %1 %lu %% %.4f %2 &amp; <b>");
    EXPECT_EQ(filledText(u"%@@", {QStringView(u"%")}), "%@");
    EXPECT_EQ(filledText(u"%@lu%lu", {QStringView(u"%"), 5}), "%lu5");
}

TEST(FilledText, other_percent_signs_are_text) {
    EXPECT_EQ(filledText(u"100 % von %@ %", {QStringView(u"x")}), "100 % von x %");
    EXPECT_EQ(filledText(u"%1 %s %d %.3f %l %.4 %%@", {QStringView(u"x")}),
              "%1 %s %d %.3f %l %.4 %x");
}

TEST(FilledText, missing_argument_leaves_the_placeholder_and_a_spare_one_is_left_out) {
    EXPECT_EQ(filledText(u"%@ %lu", {QStringView(u"x")}), "x %lu");
    EXPECT_EQ(filledText(u"%@", {QStringView(u"x"), 7}), "x");
}

TEST(FilledText, numbers_are_the_same_in_every_locale) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const std::string german = filledText(u"%.4f %ld", {1234567.5, -1234567});
    QLocale::setDefault(QLocale(QLocale::Arabic, QLocale::Egypt));
    const std::string arabic = filledText(u"%.4f %ld", {1234567.5, -1234567});
    QLocale::setDefault(before);
    EXPECT_EQ(german, "1234567.5000 -1234567");
    EXPECT_EQ(arabic, german);
}

TEST(FilledText, numbers_read_as_the_c_library_writes_them) {
    for (const double number :
         {0.0, -0.0, 1.0, -180.0, 0.00005, 0.00015, -0.00001, 89.99995, 1e15, 6.958282470703125,
          -33.86882, std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest()}) {
        std::array<char, 400> expected;
        std::snprintf(expected.data(), expected.size(), "%.4f", number);
        EXPECT_EQ(filledText(u"%.4f", {number}), expected.data());
    }
    EXPECT_EQ(filledText(u"%lu %ld", {std::numeric_limits<std::uint64_t>::max(),
                                      std::numeric_limits<std::int64_t>::min()}),
              "18446744073709551615 -9223372036854775808");
}

} // namespace
