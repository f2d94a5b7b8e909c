#include "localization/NXLocal.h"

#include "Probe.h"
#include "TestHome.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace localization;

namespace {

using nxui::CatalogRow;
using nxui::Product;

TEST(NXLocal, speaks_the_language_of_the_3d_plugin) {
    const TestHome home;
    home.store("de\n", Product::TwoD);
    home.store("en\n", Product::ThreeD);
    EXPECT_EQ(runProbe({"local", "Suchen", "Schließen", "Norvaxel", ""}, {home.variable()}).output,
              "Search\nClose\nNorvaxel\n\n");
    home.store("tr\n", Product::ThreeD);
    EXPECT_EQ(runProbe({"local", "OK"}, {home.variable()}).output, "Tamam\n");
    home.store("de\n", Product::ThreeD);
    EXPECT_EQ(runProbe({"local", "Suchen"}, {home.variable()}).output, "Suchen\n");
}

TEST(NXLocal, null_and_empty_texts_are_empty) {
    EXPECT_EQ(NXLocal(QString()), QString());
    EXPECT_EQ(NXLocal(QStringView()), QString());
    EXPECT_EQ(NXLocal(u""), QString());
}

TEST(NXLocal, half_a_surrogate_pair_counts_as_empty) {
    const char16_t text[] = {u'a', char16_t(0xD800), u'b'};
    EXPECT_EQ(NXLocal(QStringView(text, 3)), QString());
    EXPECT_EQ(NXLocal(u"😀"), u"😀"_s);
}

TEST(NXLocal, cell_that_is_not_utf8_shows_the_german_text) {
    CatalogRow row{};
    row[0] = "Grüße";
    row[1] = "gr\xFC\xDF";
    EXPECT_EQ(localText(u"Grüße", "en", {&row, 1}), u"Grüße"_s);
    row[1] = "greetings 😀";
    EXPECT_EQ(localText(u"Grüße", "en", {&row, 1}), u"greetings 😀"_s);
}

TEST(NXLocal, number_is_filled_in_after_the_translation) {
    EXPECT_EQ(filled(localText(u"Stationen · %lu / 32", "en"), {7}), u"Stops · 7 / 32"_s);
}

} // namespace
