// What only a route has: how it is travelled, and how many stations it takes.

#include "SearchWindowTest.h"

#include <QJsonArray>

namespace {

class RouteTest : public SearchWindowTest {
protected:
    // Computes the route and waits for the end.
    void routeToTheEnd(const QString& progress) {
        click(button("downloadButton"));
        ASSERT_EQ(status(), progress);
        ASSERT_EVENTUALLY(!isBusy());
    }

    // The arguments of the importer's last start, without its own name.
    QStringList arguments() const {
        QStringList words;
        const auto started = importer->records("started");
        for (const QJsonValue& word : started.last().value("argv"_L1).toArray())
            words += word.toString();
        return words.sliced(1);
    }
};

TEST_F(RouteTest, each_kind_of_travel_has_its_words_and_its_arguments) {
    importer->useStandIn();
    startWithStations({u"Köln Hbf"_s, u"Ulm"_s});
    const QString rest =
        u", Gebäude und Gelände werden für Norvaxel 3D geladen. Lange Strecken brauchen einige Minuten …"_s;
    const struct {
        int segment;
        QString progress;
        QStringList arguments;
    } kinds[] = {
        {1, u"Gleisverlauf"_s, {u"--3d"_s, u"--travel"_s, u"rail"_s}},
        {2, u"Flugbogen"_s, {u"--3d"_s, u"--travel"_s, u"flight"_s}},
        {0, u"Route"_s, {u"--3d"_s}},
    };
    for (const auto& [segment, progress, mode] : kinds) {
        SCOPED_TRACE(segment);
        click(segments("travel").at(segment));
        routeToTheEnd(progress + rest);
        EXPECT_EQ(status(), says::routeFinished);
        const QStringList words = arguments();
        ASSERT_EQ(words.size(), 7 + mode.size());
        EXPECT_EQ(words.at(0), u"--route"_s);
        EXPECT_EQ(words.at(1), u"--stations"_s);
        EXPECT_TRUE(words.at(2).endsWith("/stations.json"_L1));
        EXPECT_EQ(words.at(3), u"--output"_s);
        EXPECT_TRUE(words.at(4).startsWith(supportFolder().filePath(u"Routen/koln-hbf-ulm-"_s)))
            << words.at(4).toStdString();
        EXPECT_EQ(words.at(5), u"--endpoint"_s);
        EXPECT_EQ(words.at(6), field("routeEndpointField")->text());
        EXPECT_EQ(words.sliced(7), mode);
    }
}

// The button is disabled then: this is for what may still come from elsewhere.
TEST_F(RouteTest, fewer_than_two_stations_are_refused) {
    importer->useStandIn();
    startWithResults({u"A"_s});
    for (int count = 0; count < 2; ++count) {
        EXPECT_FALSE(control("downloadButton")->isEnabled());
        Q_EMIT button("downloadButton")->clicked();
        EXPECT_EQ(status(), u"Wähle zwei bis 32 Stationen aus den Suchergebnissen aus."_s);
        EXPECT_TRUE(statusIsRed());
        EXPECT_FALSE(isBusy());
        addResult(0);
    }
    EXPECT_EQ(importer->records("started").size(), 0);
    EXPECT_FALSE(supportFolder().exists());
}

TEST_F(RouteTest, a_place_can_be_imported_after_a_route) {
    importer->useStandIn();
    startWithStations({u"A"_s, u"B"_s});
    routeToTheEnd(says::routeLoading);
    chooseMode(0);
    clickRow(0);
    click(button("downloadButton"));
    ASSERT_EVENTUALLY(!isBusy());
    EXPECT_EQ(status(), says::finished);
    EXPECT_TRUE(supportFolder().exists(u"last-import.txt"_s));
    EXPECT_TRUE(supportFolder().exists(u"last-route.txt"_s));
}

} // namespace
