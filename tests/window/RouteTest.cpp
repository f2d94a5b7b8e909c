// The route job as the window shows it: its button, its words, its end.

#include "RouteWindowTest.h"

#include <QDesktopServices>
#include <QJsonArray>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

const ProgramLanguage programLanguage{"de", ""};

namespace {

Geocoder& geocoder = Geocoder::shared();

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

class RouteTest : public RouteWindowTest {
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
    QJsonArray stationsHandedOver() const {
        const QJsonObject files =
            importer->records("started").last().value("hand_over"_L1).toObject();
        const QString text = files.value("stations.json"_L1).toObject().value("text"_L1).toString();
        return QJsonDocument::fromJson(text.toUtf8()).object().value("stations"_L1).toArray();
    }

    void closeAlert() {
        ASSERT_NE(alert(), nullptr);
        click(alert()->prominentButton());
        settle();
        EXPECT_EQ(alert(), nullptr);
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

TEST_F(RouteTest, a_finished_route_can_be_shown_and_the_plug_in_finds_it) {
    importer->useStandIn();
    startWithStations({u"A"_s, u"B"_s});
    EXPECT_FALSE(control("finderButton")->isVisible());
    routeToTheEnd();
    EXPECT_EQ(status(), says::routeFinished);
    EXPECT_FALSE(statusIsRed());
    EXPECT_EQ(alert(), nullptr);
    EXPECT_TRUE(control("finderButton")->isVisible());
    EXPECT_EQ(button("downloadButton")->title(), u"Route berechnen"_s);
    EXPECT_TRUE(control("downloadButton")->isEnabled());
    EXPECT_EQ(stations(), numbered({u"A"_s, u"B"_s}));
    ASSERT_EQ(packages().size(), 1);
    EXPECT_EQ(
        contentOf(supportFolder().filePath(u"last-route.txt"_s).toStdString()),
        supportFolder().filePath(u"Routen/%1/route.nxd\n"_s.arg(packages().first())).toStdString());
    EXPECT_FALSE(supportFolder().exists(u"last-import.txt"_s));
    EXPECT_FALSE(supportFolder().exists(u"Routen/%1/import-choice.json"_s.arg(packages().first())));
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

TEST_F(RouteTest, while_it_runs_only_cancel_can_be_used) {
    importer->useStandIn("60");
    startWithStations({u"A"_s, u"B"_s});
    clickRow(0);
    click(button("downloadButton"));
    EXPECT_FALSE(statusIsRed());
    EXPECT_EQ(button("downloadButton")->title(), u"Berechnet …"_s);
    for (const char* name :
         {"mode", "languageButton", "query", "searchButton", "radius", "endpoint", "endpointField",
          "table", "stationTable", "routeEndpointField", "travel", "addStationButton",
          "removeStationButton", "moveStationUpButton", "moveStationDownButton", "downloadButton",
          "routeMapCheckbox"})
        EXPECT_FALSE(control(name)->isEnabled()) << name;
    EXPECT_TRUE(control("cancelButton")->isVisible());
    EXPECT_TRUE(control<look::Spinner>("spinner")->isTurning());
    click(button("downloadButton"));
    Q_EMIT button("downloadButton")->clicked();
    EXPECT_EQ(temporaryFolder().entryList(QDir::NoDotAndDotDot | QDir::Dirs).size(), 1);
    click(button("cancelButton"));
    ASSERT_EVENTUALLY(!isBusy());
    EXPECT_EQ(button("downloadButton")->title(), u"Route berechnen"_s);
}

TEST_F(RouteTest, cancel_and_escape_stop_it_and_keep_the_stations) {
    importer->useStandIn("60");
    startWithStations({u"A"_s, u"B"_s, u"C"_s});
    clickStation(1);
    int starts = 0;
    for (const bool byKey : {false, true}) {
        click(button("downloadButton"));
        ++starts;
        ASSERT_EVENTUALLY(importer->records("started").size() == starts);
        if (byKey) {
            key(window(), Qt::Key_Escape);
            ASSERT_EVENTUALLY(status() != says::routeLoading);
        } else {
            click(button("cancelButton"));
            EXPECT_EQ(status(), says::routeStopping);
            EXPECT_TRUE(isBusy()) << "the importer has not ended yet";
            EXPECT_EQ(button("downloadButton")->title(), u"Berechnet …"_s);
        }
        ASSERT_EVENTUALLY(!isBusy());
        EXPECT_EQ(status(), says::routeCancelled);
        EXPECT_FALSE(statusIsRed());
        EXPECT_EQ(alert(), nullptr);
        EXPECT_FALSE(control("finderButton")->isVisible());
        EXPECT_EQ(stations(), numbered({u"A"_s, u"B"_s, u"C"_s}));
        EXPECT_EQ(selectedStation(), 1);
        EXPECT_TRUE(control("downloadButton")->isEnabled());
        EXPECT_TRUE(livingDescendants().empty());
    }
    EXPECT_FALSE(supportFolder().exists(u"last-route.txt"_s));
}

TEST_F(RouteTest, a_cancelled_one_counts_as_such_even_if_it_finishes_meanwhile) {
    importer->useScript("output=$5\ntrap 'exit 0' TERM\nmkdir -p \"$output/basemap\"\n"
                        "for file in route.nxd stations.nxd basemap/origin.nxd "
                        "basemap/norvaxel3d.json; do : > \"$output/$file\"; done\n"
                        ": > \"$output/whole\"\n"
                        "while :; do sleep 0.01; done");
    startWithStations({u"A"_s, u"B"_s});
    click(button("downloadButton"));
    ASSERT_EVENTUALLY(!packages().isEmpty() &&
                      supportFolder().exists(u"Routen/%1/whole"_s.arg(packages().first())));
    click(button("cancelButton"));
    ASSERT_EVENTUALLY(!isBusy());
    EXPECT_EQ(status(), says::routeCancelled);
    EXPECT_FALSE(supportFolder().exists(u"last-route.txt"_s));
}

TEST_F(RouteTest, the_next_one_starts_at_once_after_a_cancelled_one) {
    startWithStations({u"A"_s, u"B"_s});
    for (int round = 0; round < 5; ++round) {
        SCOPED_TRACE(round);
        importer->useStandIn("60");
        click(button("downloadButton"));
        click(button("cancelButton"));
        ASSERT_EVENTUALLY(!isBusy());
        importer->useStandIn();
        routeToTheEnd();
        EXPECT_EQ(status(), says::routeFinished);
        EXPECT_TRUE(control("finderButton")->isVisible());
    }
    EXPECT_EQ(packages().size(), 5) << "a cancelled one has made nothing";
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

TEST_F(RouteTest, every_way_to_fail_has_its_message) {
    const auto failed = [](const QString& detail) {
        return u"Berechnung fehlgeschlagen: "_s + detail;
    };
    const QString unexplained =
        u"Das Norvaxel-3D-Paket konnte nicht vollständig geladen werden. Prüfe Internet und Stationen; für sehr lange Strecken kürzere Abschnitte berechnen."_s;
    const struct {
        const char* mode;
        QString message;
    } failures[] = {
        {"fail", failed(u"Der Datendienst ([Datendienst] antwortet nicht."_s)},
        {"fail-many", failed(u"Nur dieser Satz zählt"_s)},
        {"fail-long", failed(u"Anfang"_s + QString(494, u'x'))},
        {"fail-silently", failed(u"Es wird nichts erklärt"_s)},
        {"fail-mute", unexplained},
        {"latin1-log", failed(u"Größe überschritten"_s)},
        {"crash-by-signal", unexplained},
        {"missing-file", failed(u"Fertig: 100 %"_s)},
        {"exit-7", failed(u"Fertig: 100 %"_s)},
    };
    startWithStations({u"A"_s, u"B"_s});
    for (const auto& [mode, message] : failures) {
        SCOPED_TRACE(mode);
        importer->useStandIn("0", mode);
        routeToTheEnd();
        EXPECT_EQ(status(), message);
        EXPECT_TRUE(statusIsRed());
        EXPECT_FALSE(control("finderButton")->isVisible());
        ASSERT_NE(alert(), nullptr);
        EXPECT_EQ(alert()->windowModality(), Qt::WindowModal);
        EXPECT_EQ(alert()->parentWidget(), window());
        EXPECT_EQ(alert()->heading()->text(), u"Route konnte nicht berechnet werden"_s);
        EXPECT_EQ(alert()->information()->text(), message);
        EXPECT_EQ(alert()->prominentButton()->title(), u"OK"_s);
        EXPECT_EQ(alert()->otherButton(), nullptr);
        closeAlert();
        EXPECT_EQ(stations(), numbered({u"A"_s, u"B"_s}));
    }
    EXPECT_FALSE(supportFolder().exists(u"last-route.txt"_s));
}

TEST_F(RouteTest, every_file_of_a_package_is_required) {
    startWithStations({u"A"_s, u"B"_s});
    for (const QByteArray missing :
         {"route.nxd", "stations.nxd", "basemap/origin.nxd", "basemap/norvaxel3d.json"}) {
        SCOPED_TRACE(missing.toStdString());
        importer->useScript("output=$5\nmkdir -p \"$output/basemap\"\n"
                            "for file in route.nxd stations.nxd basemap/origin.nxd "
                            "basemap/norvaxel3d.json; do : > \"$output/$file\"; done\n"
                            "rm \"$output/" +
                            missing + "\"; echo fast");
        routeToTheEnd();
        EXPECT_EQ(status(), u"Berechnung fehlgeschlagen: fast"_s);
        closeAlert();
    }
}

TEST_F(RouteTest, a_package_without_its_pointer_is_no_failure) {
    importer->useStandIn();
    startWithStations({u"A"_s, u"B"_s});
    ASSERT_TRUE(supportFolder().mkpath(u"last-route.txt/occupied"_s));
    routeToTheEnd();
    EXPECT_EQ(
        status(),
        u"Das Paket ist gespeichert. Öffne den Ordner und wähle route.nxd im Plugin; die Verbindung zu Resolve konnte nicht gespeichert werden."_s);
    EXPECT_FALSE(statusIsRed());
    EXPECT_EQ(alert(), nullptr);
    EXPECT_TRUE(control("finderButton")->isVisible());
}

} // namespace

#include "RouteTest.moc"
using namespace app;
