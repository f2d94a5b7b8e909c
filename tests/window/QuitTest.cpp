// Ending the program: every request takes one road, and nothing is left running.

#include "SearchWindowTest.h"
#include "WaitUntil.h"
#include "localization/Language.h"
#include "platform/ChildProcess.h"

#include <QMenu>
#include <QMenuBar>

#include <csignal>

using namespace std::chrono_literals;

const ProgramLanguage programLanguage{"de", ""};

namespace {

// A way to ask for the end.
struct Road {
    const char* name;
    std::function<void(QWidget*)> ask;
};
void PrintTo(const Road& road, std::ostream* out) {
    *out << road.name;
}

void pressMenuKey(QWidget* window, Qt::Key letter) {
    QTest::keyClick(window, letter, Qt::ControlModifier);
}

const Road roads[] = {
    {"the_windows_close_button", [](QWidget* window) { window->close(); }},
    {"the_menus_quit", [](QWidget* window) { pressMenuKey(window, Qt::Key_Q); }},
    {"the_menus_close", [](QWidget* window) { pressMenuKey(window, Qt::Key_W); }},
    {"the_sessions_end", [](QWidget*) { QCoreApplication::quit(); }},
    {"SIGTERM", [](QWidget*) { std::raise(SIGTERM); }},
    {"SIGINT", [](QWidget*) { std::raise(SIGINT); }},
    {"SIGHUP", [](QWidget*) { std::raise(SIGHUP); }},
};

class QuitTest : public SearchWindowTest {
protected:
    // A route is ready to be computed.
    void startWithARoute() { startWithStations({u"A"_s, u"B"_s}); }
    // The running importer is `waitingTool`; it has begun.
    void startWithAWaitingImporter() {
        startWithARoute();
        const QByteArray output = "output=$5\n";
        importer->useScript(output + waitingTool(gate()));
        click(button("downloadButton"));
        ASSERT_EVENTUALLY(exists(".started"));
    }
    std::filesystem::path gate() const {
        return temporaryFolder().filePath(u"../gate"_s).toStdString();
    }
    bool exists(const char* suffix) const {
        return std::filesystem::exists(gate().string() + suffix);
    }
    std::string requestsToTheImporter() const { return contentOf(gate().string() + ".terms"); }
    void openGate() const { write(gate(), ""); }

    // Asks on; when the importer has heard of it, `meanwhile` is called and then the gate opened.
    void quitDuringAJob(
        const std::function<void()>& ask, const std::function<void()>& meanwhile = [] {}) {
        runToTheEnd([=, this] {
            ask();
            ASSERT_EVENTUALLY(!requestsToTheImporter().empty());
            meanwhile();
            EXPECT_TRUE(window()->isVisible()) << "the window stays until the importer has ended";
            EXPECT_TRUE(isBusy());
            EXPECT_EQ(status(), says::routeStopping);
            EXPECT_FALSE(statusIsRed());
            EXPECT_FALSE(livingDescendants().empty());
            openGate();
        });
    }
};

class QuitRoadTest : public QuitTest, public testing::WithParamInterface<Road> {
protected:
    void ask() { GetParam().ask(window()); }
};

INSTANTIATE_TEST_SUITE_P(Roads, QuitRoadTest, testing::ValuesIn(roads),
                         [](const auto& road) { return road.param.name; });

TEST_P(QuitRoadTest, an_idle_program_ends_at_once) {
    start();
    runToTheEnd([this] { ask(); });
    EXPECT_EQ(status(), says::ready);
}

TEST_P(QuitRoadTest, a_running_search_ends_with_the_program) {
    geocoder.behave({{"hang"_L1, true}});
    start();
    search(u"Berlin"_s);
    ASSERT_EVENTUALLY(geocoder.records("request").size() == 1);
    ASSERT_FALSE(livingDescendants().empty());
    runToTheEnd([this] { ask(); });
    EXPECT_EQ(status(), says::searching) << "no word on the way out";
    EXPECT_EQ(alert(), nullptr);
    EXPECT_TRUE(curlIsStopped());
    EXPECT_EVENTUALLY(livingDescendants().empty());
    end(); // the window never became idle
}

TEST_P(QuitRoadTest, a_running_job_is_waited_for) {
    startWithAWaitingImporter();
    quitDuringAJob([this] { ask(); });
    EXPECT_EQ(status(), says::routeCancelled);
    EXPECT_EQ(requestsToTheImporter(), "t");
    EXPECT_TRUE(livingDescendants().empty());
}

TEST_P(QuitRoadTest, a_second_request_changes_nothing) {
    startWithAWaitingImporter();
    quitDuringAJob([this] { ask(); },
                   [this] {
                       for (const Road& again : roads) {
                           again.ask(window());
                           settle();
                       }
                   });
    EXPECT_EQ(requestsToTheImporter(), "t") << "the importer is asked once";
}

TEST_F(QuitTest, an_importer_that_will_not_stop_is_ended_after_two_seconds) {
    importer->useStandIn("60", "ignore-term");
    startWithARoute();
    click(button("downloadButton"));
    ASSERT_EVENTUALLY(importer->records("ignoring").size() == 1);
    std::chrono::steady_clock::time_point request;
    runToTheEnd([&] {
        request = std::chrono::steady_clock::now();
        std::raise(SIGTERM);
    });
    const auto took = std::chrono::steady_clock::now() - request;
    RecordProperty("milliseconds", int(took / 1ms));
    EXPECT_GE(took, platform::stopPatience);
    EXPECT_LT(took, platform::stopPatience + 20s);
    EXPECT_TRUE(livingDescendants().empty()) << "the importer is gone with the program";
}

TEST_F(QuitTest, the_importers_own_children_end_with_it) {
    startWithARoute();
    importer->useScript("sleep 600 &\nsleep 600 &\n: > \"" +
                        QByteArray::fromStdString(gate().string()) + ".started\"\nwait");
    click(button("downloadButton"));
    ASSERT_EVENTUALLY(exists(".started"));
    runToTheEnd([] { std::raise(SIGTERM); });
    EXPECT_EVENTUALLY(livingDescendants().empty());
}

TEST_F(QuitTest, a_place_import_is_waited_for_as_well) {
    importer->useStandIn("60");
    start();
    offer({u"A"_s});
    clickRow(0);
    click(button("downloadButton"));
    ASSERT_EVENTUALLY(importer->records("started").size() == 1);
    runToTheEnd([this] { window()->close(); });
    EXPECT_EQ(status(), says::importCancelled);
}

TEST_F(QuitTest, a_request_after_a_cancel_waits_for_the_same_end) {
    startWithAWaitingImporter();
    click(button("cancelButton"));
    ASSERT_EVENTUALLY(requestsToTheImporter() == "t");
    quitDuringAJob([this] { window()->close(); });
}

TEST_F(QuitTest, a_job_that_has_just_failed_shows_no_alert_on_the_way_out) {
    importer->useStandIn("0", "fail");
    startWithARoute();
    click(button("downloadButton"));
    runToTheEnd([this] {
        // Its end is on the way to this thread, which has not heard of it yet.
        ASSERT_TRUE(waitUntil([this] { return temporaryFolder().isEmpty(); }));
        window()->close();
        EXPECT_TRUE(window()->isVisible());
    });
    EXPECT_EQ(alert(), nullptr);
}

TEST_F(QuitTest, a_package_that_was_just_finished_is_kept) {
    importer->useStandIn();
    startWithARoute();
    click(button("downloadButton"));
    runToTheEnd([this] {
        ASSERT_TRUE(waitUntil([this] { return temporaryFolder().isEmpty(); }));
        window()->close();
    });
    EXPECT_TRUE(supportFolder().exists(u"last-route.txt"_s));
}

TEST_F(QuitTest, an_open_alert_does_not_hold_the_program) {
    for (const Road& road : {roads[3], roads[4]}) {
        SCOPED_TRACE(road.name);
        importer->useStandIn("0", "fail");
        startWithARoute();
        click(button("downloadButton"));
        ASSERT_EVENTUALLY(alert() != nullptr);
        runToTheEnd([&] { road.ask(window()); });
        end();
    }
}

TEST_F(QuitTest, an_open_language_dialog_does_not_hold_the_program_and_saves_nothing) {
    for (const Road& road : {roads[3], roads[4]}) {
        SCOPED_TRACE(road.name);
        start();
        click(button("languageButton"));
        ASSERT_NE(alert(), nullptr);
        key(alert()->findChild<look::PopUp*>(), Qt::Key_End);
        runToTheEnd([&] { road.ask(window()); });
        EXPECT_EQ(nxui::readLanguage(nxui::Product::ThreeD, nxui::homeDirectory()), "de");
        end();
    }
}

TEST_F(QuitTest, a_minimised_window_ends_as_well) {
    startWithAWaitingImporter();
    window()->showMinimized();
    runToTheEnd([this] {
        std::raise(SIGTERM);
        ASSERT_EVENTUALLY(requestsToTheImporter() == "t");
        openGate();
    });
}

TEST_F(QuitTest, cancel_while_nothing_runs_has_no_effect) {
    startWithARoute();
    const QString before = status();
    Q_EMIT button("cancelButton")->clicked();
    key(window(), Qt::Key_Escape);
    key(list("stationTable"), Qt::Key_Escape);
    settle();
    EXPECT_EQ(status(), before);
    EXPECT_FALSE(isBusy());
    EXPECT_EQ(rows().size(), 1);
    EXPECT_EQ(stations(), numbered({u"A"_s, u"B"_s}));
    EXPECT_TRUE(control("downloadButton")->isEnabled());
    EXPECT_TRUE(window()->isVisible());
}

} // namespace
