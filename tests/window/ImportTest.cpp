// What only the import of a place has.

#include "SearchWindowTest.h"

#include <QJsonArray>

namespace {

using ImportTest = SearchWindowTest;

TEST_F(ImportTest, the_choices_of_the_window_reach_the_importer) {
    importer->useStandIn();
    start();
    choose("radius", 3);
    choose("endpoint", 3);
    QTest::keyClicks(field("endpointField"), u"  https://karten.example.org/api?zone=1 "_s);
    searchResults(u"  Köln "_s);
    clickRow(0);
    click(button("downloadButton"));
    ASSERT_EVENTUALLY(!isBusy());
    EXPECT_EQ(status(), says::finished);
    const auto started = importer->records("started");
    ASSERT_EQ(started.size(), 1);
    const QJsonArray arguments = started.first().value("argv"_L1).toArray();
    EXPECT_EQ(arguments.at(3).toString(), u"Köln"_s);
    EXPECT_EQ(arguments.at(9).toString(), u"2.0"_s);
    EXPECT_EQ(arguments.at(12).toString(), u"--endpoint"_s);
    EXPECT_EQ(arguments.at(13).toString(), u"https://karten.example.org/api?zone=1"_s);
}

TEST_F(ImportTest, what_the_importer_says_is_shown_literally) {
    importer->useStandIn("0", "fail-long");
    start();
    searchResults(u"Berlin"_s);
    clickRow(0);
    click(button("downloadButton"));
    ASSERT_EVENTUALLY(!isBusy());
    const QString end = u" 🎬 <b>Ende</b> %@ %1 & fertig"_s;
    const QString message = u"Download fehlgeschlagen: "_s + QString(650 - end.size(), u'x') + end +
                            u"\nVersuche einen kleineren Umkreis oder einen anderen Datendienst."_s;
    const QSize size = window()->size();
    EXPECT_EQ(place("status"), QRect(22, 516, 776, 48));
    EXPECT_TRUE(control<look::Label>("status")->isElided());
    EXPECT_EQ(window()->size(), size);
    EXPECT_FALSE(alert()->information()->isElided()) << "here is room for all of it";
    EXPECT_LE(alert()->width(), window()->width());
    EXPECT_EQ(status(), message);
    EXPECT_EQ(alert()->information()->text(), message);
    closeAlert();
    EXPECT_EQ(toolTipAt(control("status"), {5, 5}), message);
}

} // namespace
