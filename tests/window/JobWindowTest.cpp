#include "JobWindowTest.h"

const ShownJob placeJob{
    .name = "place",
    .mode = NXImportApp::Mode::Place,
    .title = u"Ortsdaten laden"_s,
    .busyTitle = u"Lädt …"_s,
    .progress = says::loading,
    .stopping = u"Import wird beendet …"_s,
    .cancelled = says::importCancelled,
    .finished = says::finished,
    .finishedWithoutPointer =
        u"Ortsdaten sind fertig. Die Verbindung zu Resolve konnte nicht gespeichert werden. Öffne den Ordner und wähle origin.nxd im Plugin."_s,
    .heading = u"Ortsdaten konnten nicht geladen werden"_s,
    .failed =
        u"Download fehlgeschlagen: %1\nVersuche einen kleineren Umkreis oder einen anderen Datendienst."_s,
    .folder = u"Ortsdaten"_s,
    .files = "origin.nxd norvaxel3d.json",
    .pointer = u"last-import.txt"_s,
    .entry = u"origin.nxd"_s,
    .output = "output=${11}\n",
    .address = "endpointField",
    .badAddress = u"Der Datendienst braucht eine gültige HTTPS-Adresse ohne Zugangsdaten."_s,
    .noStart = u"Der mitgelieferte Ortsimport konnte nicht starten: %1"_s,
};

const ShownJob routeJob{
    .name = "route",
    .mode = NXImportApp::Mode::Route,
    .title = u"Route berechnen"_s,
    .busyTitle = u"Berechnet …"_s,
    .progress = says::routeLoading,
    .stopping = says::routeStopping,
    .cancelled = says::routeCancelled,
    .finished = says::routeFinished,
    .finishedWithoutPointer =
        u"Das Paket ist gespeichert. Öffne den Ordner und wähle route.nxd im Plugin; die Verbindung zu Resolve konnte nicht gespeichert werden."_s,
    .heading = u"Route konnte nicht berechnet werden"_s,
    .failed = u"Berechnung fehlgeschlagen: %1"_s,
    .folder = u"Routen"_s,
    .files = "route.nxd stations.nxd basemap/origin.nxd basemap/norvaxel3d.json",
    .pointer = u"last-route.txt"_s,
    .entry = u"route.nxd"_s,
    .output = "output=$5\n",
    .address = "routeEndpointField",
    .badAddress =
        u"Der Routingdienst braucht eine gültige HTTPS-Adresse ohne Zugangsdaten, Suchparameter oder Fragment."_s,
    .noStart =
        u"Die mitgelieferte Routenberechnung konnte nicht starten. Bitte das vollständige Plugin installieren."_s,
};

void PrintTo(const ShownJob& kind, std::ostream* out) {
    *out << kind.name;
}

void JobWindowTest::SetUp() {
    SearchWindowTest::SetUp();
    importer->useStandIn();
}

void JobWindowTest::startReady() {
    if (job().mode == Mode::Route) {
        startWithStations({u"A"_s, u"B"_s});
    } else {
        start();
        choose("endpoint", 3);
        field("endpointField")->setText(u"https://karten.example.org/api"_s);
        searchResults(u"Berlin"_s);
        clickRow(3);
    }
    expectReady();
}

void JobWindowTest::expectReady() {
    if (job().mode == Mode::Route) {
        EXPECT_EQ(stations(), numbered({u"A"_s, u"B"_s}));
        EXPECT_EQ(selectedStation(), 1);
    } else {
        EXPECT_EQ(rows().size(), 8);
        EXPECT_EQ(window()->selectedResult(), 3);
    }
    EXPECT_FALSE(isBusy());
    EXPECT_EQ(button("downloadButton")->title(), job().title);
    EXPECT_TRUE(control("downloadButton")->isEnabled());
}

void JobWindowTest::toTheEnd() {
    begin();
    ASSERT_EQ(status(), job().progress);
    ASSERT_EVENTUALLY(!isBusy());
    expectReady();
}

void JobWindowTest::cancel() {
    click(button("cancelButton"));
    ASSERT_EVENTUALLY(!isBusy());
    EXPECT_EQ(status(), job().cancelled);
}

void JobWindowTest::expectRefusal(const QString& message) {
    begin();
    EXPECT_EQ(status(), message);
    EXPECT_TRUE(statusIsRed());
    EXPECT_EQ(alert(), nullptr);
    EXPECT_EQ(importer->records("started").size(), 0);
    expectReady();
}

void JobWindowTest::expectFailure(const QString& message) {
    EXPECT_EQ(status(), message);
    EXPECT_TRUE(statusIsRed());
    EXPECT_FALSE(control("finderButton")->isVisible());
    EXPECT_FALSE(supportFolder().exists(job().pointer));
    look::Panel* shown = alert();
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(shown->heading()->text(), job().heading);
    EXPECT_EQ(shown->information()->text(), message);
    closeAlert();
    EXPECT_EQ(status(), message) << "the status outlives the alert";
}

QStringList JobWindowTest::packages() const {
    return QDir(inSupport(job().folder))
        .entryList(QDir::NoDotAndDotDot | QDir::Dirs, QDir::Time | QDir::Reversed);
}

QByteArray JobWindowTest::wholePackage() {
    return job().output + "mkdir -p \"$output/basemap\"\nfor file in " + job().files +
           "; do : > \"$output/$file\"; done\n";
}
