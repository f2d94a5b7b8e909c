// What only a route has: how it is travelled, its stations on the way to the importer.

#include "SearchWindowTest.h"

#include <QDesktopServices>
#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

namespace {

// What would open a folder: a desktop's own way, taken over by the test.
class Desktop : public QObject {
    Q_OBJECT
public:
    Desktop() { QDesktopServices::setUrlHandler(u"file"_s, this, "open"); }
    ~Desktop() override { QDesktopServices::unsetUrlHandler(u"file"_s); }

    QList<QUrl> opened;

public Q_SLOTS:
    void open(const QUrl& address) { opened += address; }
};

class RouteTest : public SearchWindowTest {
protected:
    // Computes the route and waits for the end.
    void routeToTheEnd(const QString& progress = says::routeLoading) {
        click(button("downloadButton"));
        ASSERT_EQ(status(), progress);
        ASSERT_EVENTUALLY(!isBusy());
    }

    QStringList packages() const {
        return QDir(supportFolder().filePath(u"Routen"_s))
            .entryList(QDir::NoDotAndDotDot | QDir::Dirs, QDir::Time | QDir::Reversed);
    }

    // The arguments of the importer's last start, without its own name.
    QStringList arguments() const {
        QStringList words;
        const auto started = importer->records("started");
        for (const QJsonValue& word : started.last().value("argv"_L1).toArray())
            words += word.toString();
        return words.sliced(1);
    }

    // The stations as the importer's last start was given them.
    QString textHandedOver() const {
        const QJsonObject files =
            importer->records("started").last().value("hand_over"_L1).toObject();
        return files.value("stations.json"_L1).toObject().value("text"_L1).toString();
    }
    QJsonArray stationsHandedOver() const {
        return QJsonDocument::fromJson(textHandedOver().toUtf8())
            .object()
            .value("stations"_L1)
            .toArray();
    }
};

TEST_F(RouteTest, two_stations_enable_the_main_button) {
    startWithResults({u"A"_s});
    for (const bool enabled : {false, false, true, true}) {
        EXPECT_EQ(control("downloadButton")->isEnabled(), enabled) << stations().size();
        EXPECT_EQ(button("downloadButton")->title(), u"Route berechnen"_s);
        click(button("addStationButton"));
    }
    geocoder.behave({{"hang"_L1, true}});
    search(u"Berlin"_s);
    EXPECT_FALSE(control("downloadButton")->isEnabled()) << "not while a search runs";
    EXPECT_EQ(button("downloadButton")->title(), u"Route berechnen"_s);
    Q_EMIT button("downloadButton")->clicked();
    EXPECT_EQ(status(), says::searching);
    click(button("cancelButton"));
    EXPECT_TRUE(control("downloadButton")->isEnabled());
    for (int left = 3; left >= 1; --left) {
        click(button("removeStationButton"));
        EXPECT_EQ(control("downloadButton")->isEnabled(), left >= 2) << left;
    }
}

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
    EXPECT_EQ(packages().size(), 3);
}

// No desktop answers here, so the folder is opened instead of the file selected in it.
TEST_F(RouteTest, the_folder_button_shows_the_last_package) {
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/dev/null/bus");
    importer->useStandIn();
    startWithStations({u"A"_s, u"B"_s});
    Desktop desktop;
    Q_EMIT button("finderButton")->clicked();
    settle();
    EXPECT_TRUE(desktop.opened.isEmpty()) << "there is no package yet";
    for (int count = 1; count <= 2; ++count) {
        routeToTheEnd();
        const QByteArray pointer = QByteArray::fromStdString(
            contentOf(supportFolder().filePath(u"last-route.txt"_s).toStdString()));
        click(button("finderButton"));
        ASSERT_EVENTUALLY(desktop.opened.size() == count);
        EXPECT_EQ(desktop.opened.last().toLocalFile() + "/route.nxd\n"_L1,
                  QString::fromUtf8(pointer));
    }
    EXPECT_NE(desktop.opened.first(), desktop.opened.last());
    EXPECT_EQ(status(), says::routeFinished) << "the status says nothing of it";
}

TEST_F(RouteTest, the_stations_reach_the_importer_in_their_order) {
    importer->useStandIn();
    start(Mode::Route);
    offer({feature(u"  Köln "_s, {}, 6.9578, 50.9422), feature(u"am Rand"_s, {}, 180, -90)});
    addResult(0);
    addResult(1);
    click(button("moveStationUpButton"));
    routeToTheEnd();
    EXPECT_EQ(status(), says::routeFinished);
    EXPECT_EQ(
        stationsHandedOver(),
        QJsonArray({QJsonObject{{"name"_L1, u"am Rand"_s}, {"lon"_L1, 180}, {"lat"_L1, -90}},
                    QJsonObject{{"name"_L1, u"Köln"_s}, {"lon"_L1, 6.9578}, {"lat"_L1, 50.9422}}}));
    EXPECT_TRUE(textHandedOver().contains(u"\"lat\": -90,\n            \"lon\": 180,"_s));
}

TEST_F(RouteTest, thirty_two_stations_are_accepted) {
    importer->useStandIn();
    startWithResults({u"A"_s});
    while (control("addStationButton")->isEnabled())
        click(button("addStationButton"));
    ASSERT_EQ(stations().size(), 32);
    routeToTheEnd();
    EXPECT_EQ(status(), says::routeFinished);
    EXPECT_EQ(stationsHandedOver().size(), 32);
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

TEST_F(RouteTest, a_station_with_a_name_of_more_than_200_units_is_refused) {
    importer->useStandIn();
    startWithStations({QString(200, u'n'), QString(200, u'n'), QString(201, u'n')});
    click(button("downloadButton"));
    EXPECT_EQ(
        status(),
        u"Ein Stationsname ist zu lang. Wähle einen eindeutig benannten Ort oder eine Adresse aus."_s);
    EXPECT_TRUE(statusIsRed());
    click(button("removeStationButton"));
    click(button("downloadButton"));
    ASSERT_EVENTUALLY(!isBusy());
    EXPECT_EQ(status(), says::routeFinished);
}

TEST_F(RouteTest, a_place_can_be_imported_after_a_route) {
    importer->useStandIn();
    startWithStations({u"A"_s, u"B"_s});
    routeToTheEnd();
    chooseMode(0);
    clickRow(0);
    click(button("downloadButton"));
    ASSERT_EVENTUALLY(!isBusy());
    EXPECT_EQ(status(), says::finished);
    EXPECT_TRUE(supportFolder().exists(u"last-import.txt"_s));
    EXPECT_TRUE(supportFolder().exists(u"last-route.txt"_s));
}

} // namespace

#include "RouteTest.moc"
using namespace app;
