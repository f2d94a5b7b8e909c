// Importing the chosen place, as the window shows it.

#include "Geocoder.h"
#include "WindowTest.h"

#include <QJsonArray>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace app;

const ProgramLanguage programLanguage{"de", ""};

namespace {

Geocoder& geocoder = Geocoder::shared();

class ImportTest : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        geocoder.reset();
    }

    // A place is chosen and ready to be imported.
    void startWithAPlace() {
        start();
        searchResults(u"Berlin"_s);
        clickRow(0);
        ASSERT_TRUE(control("downloadButton")->isEnabled());
    }

    // Imports the chosen place and waits for the end.
    void importToTheEnd() {
        click(button("downloadButton"));
        ASSERT_EQ(status(), says::loading);
        ASSERT_EVENTUALLY(!isBusy());
    }

    // The alert's text is the status; it is read and closed with its button.
    void expectAlert(const QString& message) {
        EXPECT_EQ(status(), message);
        EXPECT_TRUE(statusIsRed());
        look::Panel* shown = alert();
        ASSERT_NE(shown, nullptr);
        EXPECT_EQ(shown->heading()->text(), u"Ortsdaten konnten nicht geladen werden"_s);
        EXPECT_EQ(shown->information()->text(), message);
        closeAlert();
    }

    void closeAlert() {
        ASSERT_NE(alert(), nullptr);
        click(alert()->prominentButton());
        settle();
        EXPECT_EQ(alert(), nullptr);
    }

    static QString failed(const QString& detail) {
        return u"Download fehlgeschlagen: "_s + detail +
               u"\nVersuche einen kleineren Umkreis oder einen anderen Datendienst."_s;
    }
};

TEST_F(ImportTest, a_finished_package_can_be_shown) {
    importer->useStandIn();
    startWithAPlace();
    EXPECT_FALSE(control("finderButton")->isVisible());
    importToTheEnd();
    EXPECT_EQ(status(), says::finished);
    EXPECT_FALSE(statusIsRed());
    EXPECT_EQ(alert(), nullptr);
    EXPECT_TRUE(control("finderButton")->isVisible());
    EXPECT_EQ(button("downloadButton")->title(), u"Ortsdaten laden"_s);
    EXPECT_TRUE(control("downloadButton")->isEnabled());
    EXPECT_EQ(rows().size(), 8) << "the results stay";
    EXPECT_EQ(window()->selectedResult(), 0);

    const QStringList packages =
        QDir(supportFolder().filePath(u"Ortsdaten"_s)).entryList(QDir::NoDotAndDotDot | QDir::Dirs);
    ASSERT_EQ(packages.size(), 1);
    EXPECT_EQ(contentOf(supportFolder().filePath(u"last-import.txt"_s).toStdString()),
              supportFolder()
                  .filePath(u"Ortsdaten/%1/origin.nxd\n"_s.arg(packages.first()))
                  .toStdString());
}

TEST_F(ImportTest, the_choices_of_the_window_reach_the_importer) {
    importer->useStandIn();
    start();
    choose("radius", 3);
    choose("endpoint", 3);
    QTest::keyClicks(field("endpointField"), u"  https://karten.example.org/api?zone=1 "_s);
    searchResults(u"  Köln "_s);
    clickRow(0);
    importToTheEnd();
    EXPECT_EQ(status(), says::finished);
    const auto started = importer->records("started");
    ASSERT_EQ(started.size(), 1);
    const QJsonArray arguments = started.first().value("argv"_L1).toArray();
    EXPECT_EQ(arguments.at(3).toString(), u"Köln"_s);
    EXPECT_EQ(arguments.at(9).toString(), u"2.0"_s);
    EXPECT_EQ(arguments.at(12).toString(), u"--endpoint"_s);
    EXPECT_EQ(arguments.at(13).toString(), u"https://karten.example.org/api?zone=1"_s);
}

TEST_F(ImportTest, while_it_runs_only_cancel_can_be_used) {
    importer->useStandIn("60");
    startWithAPlace();
    choose("endpoint", 3);
    field("endpointField")->setText(u"https://a.example"_s);
    click(button("downloadButton"));
    EXPECT_EQ(status(), says::loading);
    EXPECT_FALSE(statusIsRed());
    EXPECT_EQ(button("downloadButton")->title(), u"Lädt …"_s);
    for (const char* name :
         {"mode", "languageButton", "query", "searchButton", "radius", "endpoint", "endpointField",
          "table", "stationTable", "routeEndpointField", "travel", "addStationButton",
          "removeStationButton", "moveStationUpButton", "moveStationDownButton", "downloadButton",
          "routeMapCheckbox"})
        EXPECT_FALSE(control(name)->isEnabled()) << name;
    EXPECT_TRUE(field("endpointField")->isReadOnly());
    EXPECT_TRUE(control("cancelButton")->isVisible());
    EXPECT_TRUE(control("cancelButton")->isEnabled());
    EXPECT_TRUE(control<look::Spinner>("spinner")->isTurning());

    // Neither keys nor changes from elsewhere disturb it.
    key(field("query"), Qt::Key_Return);
    field("query")->setText(u"Ulm"_s);
    EXPECT_EQ(status(), says::loading);
    EXPECT_EQ(rows().size(), 8);
    EXPECT_EQ(geocoder.asked(), QStringList(u"Berlin"_s));

    click(button("cancelButton"));
    ASSERT_EVENTUALLY(!isBusy());
    for (const char* name : {"mode", "languageButton", "query", "searchButton", "radius",
                             "endpoint", "endpointField", "table", "downloadButton"})
        EXPECT_TRUE(control(name)->isEnabled()) << name;
    EXPECT_FALSE(field("endpointField")->isReadOnly());
    EXPECT_FALSE(control<look::Spinner>("spinner")->isTurning());
}

TEST_F(ImportTest, a_second_press_does_nothing) {
    importer->useStandIn("60");
    startWithAPlace();
    click(button("downloadButton"));
    ASSERT_EVENTUALLY(importer->records("started").size() == 1);
    click(button("downloadButton"));
    key(button("downloadButton"), Qt::Key_Space);
    // What assistive technology or a late event might still do.
    Q_EMIT button("downloadButton")->clicked();
    EXPECT_EQ(temporaryFolder().entryList(QDir::NoDotAndDotDot | QDir::Dirs).size(), 1);
    EXPECT_EQ(status(), says::loading);
    click(button("cancelButton"));
    ASSERT_EVENTUALLY(!isBusy());
    EXPECT_EQ(importer->records("started").size(), 1);
}

TEST_F(ImportTest, cancel_and_escape_stop_the_importer) {
    importer->useStandIn("60");
    startWithAPlace();
    int starts = 0;
    for (const bool byKey : {false, true}) {
        click(button("downloadButton"));
        ++starts;
        ASSERT_EVENTUALLY(importer->records("started").size() == starts);
        if (byKey) {
            key(window(), Qt::Key_Escape);
            ASSERT_EVENTUALLY(status() != says::loading);
        } else {
            click(button("cancelButton"));
            EXPECT_EQ(status(), u"Import wird beendet …"_s);
            EXPECT_TRUE(isBusy()) << "the importer has not ended yet";
        }
        ASSERT_EVENTUALLY(!isBusy());
        EXPECT_EQ(status(), says::importCancelled);
        EXPECT_FALSE(statusIsRed());
        EXPECT_EQ(alert(), nullptr);
        EXPECT_FALSE(control("finderButton")->isVisible());
        EXPECT_TRUE(livingDescendants().empty());
    }
}

TEST_F(ImportTest, an_importer_that_will_not_stop_is_ended) {
    importer->useStandIn("60", "ignore-term");
    startWithAPlace();
    click(button("downloadButton"));
    ASSERT_EVENTUALLY(importer->records("ignoring").size() == 1);
    click(button("cancelButton"));
    click(button("cancelButton"));
    EXPECT_EQ(status(), u"Import wird beendet …"_s);
    ASSERT_EVENTUALLY(!isBusy());
    EXPECT_EQ(status(), says::importCancelled);
}

TEST_F(ImportTest, a_failure_is_told_by_the_status_and_an_alert) {
    importer->useStandIn("0", "fail");
    startWithAPlace();
    importToTheEnd();
    const QString message = failed(
        u"Der Datendienst ([Datendienst] antwortet nicht.\nStatus 504 nach drei Versuchen"_s);
    look::Panel* shown = alert();
    ASSERT_NE(shown, nullptr);
    EXPECT_TRUE(shown->isVisible());
    EXPECT_EQ(shown->kind(), look::PanelKind::Alert);
    EXPECT_EQ(shown->windowModality(), Qt::WindowModal);
    EXPECT_EQ(shown->parentWidget(), window());
    EXPECT_EQ(shown->prominentButton()->title(), u"OK"_s);
    EXPECT_EQ(shown->otherButton(), nullptr);
    auto* spoken = QAccessible::queryAccessibleInterface(shown);
    EXPECT_EQ(spoken->role(), QAccessible::AlertMessage);
    EXPECT_EQ(spoken->text(QAccessible::Name), u"Ortsdaten konnten nicht geladen werden"_s);
    EXPECT_EQ(spoken->text(QAccessible::Description), message);
    // The window behind is idle again, and waits.
    EXPECT_EQ(button("downloadButton")->title(), u"Ortsdaten laden"_s);
    EXPECT_FALSE(control("finderButton")->isVisible());
    expectAlert(message);
    EXPECT_EQ(status(), message) << "the status outlives the alert";
}

TEST_F(ImportTest, the_alert_closes_by_its_keys) {
    importer->useStandIn("0", "fail-mute");
    startWithAPlace();
    for (const Qt::Key each : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Space}) {
        importToTheEnd();
        ASSERT_NE(alert(), nullptr);
        ASSERT_EVENTUALLY(alert()->isActiveWindow());
        EXPECT_TRUE(alert()->isAncestorOf(QApplication::focusWidget()));
        key(QApplication::focusWidget(), each);
        ASSERT_EVENTUALLY(alert() == nullptr);
        // As a desktop does; the screen that nobody sees has no window manager.
        window()->activateWindow();
        ASSERT_EVENTUALLY(window()->isActiveWindow());
    }
}

TEST_F(ImportTest, every_way_to_fail_has_its_message) {
    const QString unexplained =
        u"Die Ortsdaten konnten nicht geladen werden. Prüfe Verbindung und Datendienst oder wähle einen kleineren Umkreis."_s;
    const struct {
        const char* mode;
        QString message;
    } failures[] = {
        {"fail-many", failed(u"Nur dieser Satz zählt\nund diese Zeile gehört dazu"_s)},
        {"fail-silently", failed(u"Es wird nichts erklärt"_s)},
        {"fail-mute", unexplained},
        {"latin1-log", unexplained},
        {"crash-by-signal", unexplained},
        {"missing-file",
         failed(
             u"Ortslage: 0 %\nGelände: 20 %\nStraßen und Wege: 40 %\nGebäude: 60 %\nWasser und Wald: 80 %\nFertig: 100 %"_s)},
    };
    for (const auto& [mode, message] : failures) {
        SCOPED_TRACE(mode);
        importer->useStandIn("0", mode);
        startWithAPlace();
        importToTheEnd();
        expectAlert(message);
        EXPECT_FALSE(control("finderButton")->isVisible());
        end();
    }
}

TEST_F(ImportTest, what_the_importer_says_is_shown_literally) {
    importer->useStandIn("0", "fail-long");
    startWithAPlace();
    importToTheEnd();
    const QString end = u" 🎬 <b>Ende</b> %@ %1 & fertig"_s;
    const QString message = failed(QString(650 - end.size(), u'x') + end);
    const QSize size = window()->size();
    EXPECT_EQ(place("status"), QRect(22, 516, 776, 48));
    EXPECT_TRUE(control<look::Label>("status")->isElided());
    EXPECT_EQ(window()->size(), size);
    EXPECT_FALSE(alert()->information()->isElided()) << "here is room for all of it";
    EXPECT_LE(alert()->width(), window()->width());
    expectAlert(message);
    EXPECT_EQ(toolTipAt(control("status"), {5, 5}), message);
}

TEST_F(ImportTest, a_package_without_its_pointer_is_no_failure) {
    importer->useStandIn();
    startWithAPlace();
    // A folder where the pointer file should go.
    ASSERT_TRUE(supportFolder().mkpath(u"last-import.txt/occupied"_s));
    importToTheEnd();
    EXPECT_EQ(
        status(),
        u"Ortsdaten sind fertig. Die Verbindung zu Resolve konnte nicht gespeichert werden. Öffne den Ordner und wähle origin.nxd im Plugin."_s);
    EXPECT_FALSE(statusIsRed());
    EXPECT_EQ(alert(), nullptr);
    EXPECT_TRUE(control("finderButton")->isVisible());
}

TEST_F(ImportTest, the_finished_package_is_forgotten_when_the_next_import_starts) {
    importer->useStandIn();
    startWithAPlace();
    importToTheEnd();
    EXPECT_TRUE(control("finderButton")->isVisible());
    importer->useStandIn("60");
    click(button("downloadButton"));
    EXPECT_FALSE(control("finderButton")->isVisible());
    click(button("cancelButton"));
    ASSERT_EVENTUALLY(!isBusy());
    EXPECT_FALSE(control("finderButton")->isVisible());

    importer->useStandIn();
    importToTheEnd();
    EXPECT_TRUE(control("finderButton")->isVisible());
    importer->useStandIn("0", "fail-mute");
    importToTheEnd();
    EXPECT_FALSE(control("finderButton")->isVisible());
    closeAlert();
}

TEST_F(ImportTest, a_new_search_keeps_the_finished_package) {
    importer->useStandIn();
    startWithAPlace();
    importToTheEnd();
    searchResults(u"Neustadt"_s);
    EXPECT_TRUE(control("finderButton")->isVisible());
}

// A process that the importer leaves behind holds its output open: nobody waits for that.
TEST_F(ImportTest, a_process_that_the_importer_leaves_behind_delays_nothing) {
    importer->useScript("mkdir \"$output\"; echo {} > \"$output/origin.nxd\";"
                        "echo {} > \"$output/norvaxel3d.json\"\n"
                        "(exec sleep 600) & echo $! > \"$output/left\"");
    startWithAPlace();
    importToTheEnd();
    EXPECT_EQ(status(), says::finished);
    const QDir packages(supportFolder().filePath(u"Ortsdaten"_s));
    const QString left = packages.filePath(
        packages.entryList(QDir::NoDotAndDotDot | QDir::Dirs).first() + "/left"_L1);
    const int process = std::stoi(contentOf(left.toStdString()));
    EXPECT_EQ(livingDescendants(), std::vector<int>{process});
    EXPECT_EQ(kill(process, SIGKILL), 0);
}

} // namespace
