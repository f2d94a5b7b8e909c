// The window without a mouse: everything can be done with keys, and the keyboard always has a place
// that shows. Every key goes to the window's own focus, as a person's does.

#include "SearchWindowTest.h"
#include "localization/Language.h"
#include "look/style/FocusRing.h"

#include <QAbstractItemView>
#include <QJsonArray>
#include <QMenu>
#include <QMenuBar>

const ProgramLanguage programLanguage{"de", ""};

namespace {

class KeyboardTest : public SearchWindowTest {
protected:
    // What has the keyboard now, by its name; a segment by its group's, what lies in an alert or a
    // dialog by its title.
    static QString focused() {
        const QWidget* focus = QApplication::focusWidget();
        if (!focus)
            return u"nothing"_s;
        if (const auto* button = qobject_cast<const look::Button*>(focus);
            button && button->objectName().isEmpty())
            return button->title();
        return focus->objectName().isEmpty() ? focus->parentWidget()->objectName()
                                             : focus->objectName();
    }

    // To the window, which hands a key to its focus.
    static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QWidget* focus = QApplication::focusWidget();
        ASSERT_NE(focus, nullptr) << "nothing hears the key";
        QTest::keyClick(focus->window()->windowHandle(), key, modifiers);
        settle();
    }
    static void press(Qt::Key key, int times) {
        for (int i = 0; i < times; ++i)
            press(key);
    }
    static void type(const QString& text) {
        for (const QChar letter : text)
            QTest::keyClick(QApplication::focusWidget()->window()->windowHandle(),
                            letter.toLatin1());
        settle();
    }

    // Presses Tab, or Shift and Tab, until this control has the keyboard. Each stop on the way
    // wears the ring or shows a selection.
    void tabTo(const QString& name, Qt::Key key = Qt::Key_Tab) {
        for (int i = 0; i < 20 && focused() != name; ++i) {
            press(key, key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
            expectToBeSeen();
        }
        ASSERT_EQ(focused(), name);
    }
    void backTo(const QString& name) { tabTo(name, Qt::Key_Backtab); }

    // Something can be used with the keyboard, and it shows where that is.
    void expectToBeSeen() const {
        const QWidget* focus = QApplication::focusWidget();
        ASSERT_NE(focus, nullptr) << "the keyboard is lost";
        EXPECT_TRUE(focus->isEnabled() && focus->isVisible()) << focused().toStdString();
        const auto* list = qobject_cast<const look::PlaceList*>(focus);
        if (!list || !list->selectionModel()->hasSelection()) {
            ASSERT_NE(look::ringedControl(), nullptr) << focused().toStdString();
            EXPECT_TRUE(look::ringedControl() == focus ||
                        look::ringedControl()->isAncestorOf(focus));
        }
    }
    void expectFocus(const QString& name) const {
        EXPECT_EQ(focused(), name);
        expectToBeSeen();
    }

    // Types a text into the search field and presses Return there.
    void typeAndSearch(const QString& text, const QString& answer = says::choose) {
        tabTo(u"query"_s);
        press(Qt::Key_A, Qt::ControlModifier);
        type(text);
        press(Qt::Key_Return);
        ASSERT_EVENTUALLY(status() == answer);
    }
    static void press(Qt::Key key, Qt::KeyboardModifier modifier) {
        press(key, Qt::KeyboardModifiers(modifier));
    }

    void hang() { geocoder.behave({{"hang"_L1, true}}); }
};

// --- everything with keys ---

TEST_F(KeyboardTest, a_place_is_searched_chosen_and_imported) {
    importer->useStandIn();
    start();
    expectFocus(u"query"_s);
    type(u"Berlin"_s);
    press(Qt::Key_Return);
    ASSERT_EVENTUALLY(status() == says::choose);
    expectFocus(u"query"_s);
    press(Qt::Key_Down);
    expectFocus(u"table"_s);
    EXPECT_EQ(window()->selectedResult(), 0);
    press(Qt::Key_Down);
    EXPECT_EQ(window()->selectedResult(), 1);

    tabTo(u"radius"_s);
    press(Qt::Key_Down);
    EXPECT_EQ(popUp("radius")->currentText(), u"1,2 km"_s);
    tabTo(u"endpoint"_s);
    press(Qt::Key_Space);
    ASSERT_EVENTUALLY(popUp("endpoint")->view()->isVisible());
    press(Qt::Key_End);
    press(Qt::Key_Return);
    ASSERT_EVENTUALLY(!popUp("endpoint")->view()->isVisible());
    EXPECT_EQ(popUp("endpoint")->currentIndex(), 3);
    expectFocus(u"endpointField"_s);
    type(u"https://a.example/api"_s);
    backTo(u"table"_s);
    EXPECT_EQ(window()->selectedResult(), 1);

    press(Qt::Key_Return);
    expectFocus(u"downloadButton"_s);
    press(Qt::Key_Space);
    ASSERT_EVENTUALLY(status() == says::finished);
    const QJsonArray words = importer->records("started").first().value("argv"_L1).toArray();
    EXPECT_TRUE(words.contains(u"1.2"_s)) << "the radius";
    EXPECT_TRUE(words.contains(u"https://a.example/api"_s));
    expectFocus(u"downloadButton"_s);
    backTo(u"finderButton"_s);
}

TEST_F(KeyboardTest, a_route_is_collected_ordered_and_computed) {
    importer->useStandIn();
    start();
    backTo(u"mode"_s);
    press(Qt::Key_Right);
    EXPECT_EQ(status(), says::routeReady);
    expectFocus(u"mode"_s);
    tabTo(u"query"_s);
    for (const QString& name : {u"A"_s, u"B"_s, u"C"_s, u"D"_s}) {
        geocoder.behave(withBody(answer({feature(name)})));
        typeAndSearch(name);
        press(Qt::Key_Down);
        EXPECT_EQ(status(), says::resultChosen);
        press(Qt::Key_Return);
        expectFocus(u"query"_s);
    }
    EXPECT_EQ(stations(), numbered({u"A"_s, u"B"_s, u"C"_s, u"D"_s}));

    tabTo(u"stationTable"_s);
    EXPECT_EQ(selectedStation(), 3);
    press(Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(stations(), numbered({u"A"_s, u"B"_s, u"D"_s, u"C"_s}));
    press(Qt::Key_Home);
    EXPECT_EQ(selectedStation(), 0);
    press(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(stations(), numbered({u"B"_s, u"A"_s, u"D"_s, u"C"_s}));
    press(Qt::Key_Down);
    press(Qt::Key_Delete);
    EXPECT_EQ(stations(), numbered({u"B"_s, u"A"_s, u"C"_s}));
    expectFocus(u"stationTable"_s);
    tabTo(u"removeStationButton"_s);
    press(Qt::Key_Space);
    EXPECT_EVENTUALLY(stations() == numbered({u"B"_s, u"A"_s}));
    expectFocus(u"removeStationButton"_s);

    tabTo(u"travel"_s);
    press(Qt::Key_Right, 2);
    EXPECT_EQ(control<look::Segments>("travel")->selectedSegment(), 2);
    tabTo(u"routeEndpointField"_s);
    tabTo(u"downloadButton"_s);
    press(Qt::Key_Space);
    ASSERT_EVENTUALLY(status() == says::routeFinished);
    expectFocus(u"downloadButton"_s);
}

TEST_F(KeyboardTest, a_language_is_chosen_and_confirmed) {
    start();
    tabTo(u"languageButton"_s);
    press(Qt::Key_Space);
    ASSERT_EVENTUALLY(alert());
    expectFocus(u"languages"_s);
    press(Qt::Key_Down);
    tabTo(u"Übernehmen"_s);
    tabTo(u"Abbrechen"_s);
    press(Qt::Key_Space);
    ASSERT_EVENTUALLY(!alert());
    expectFocus(u"languageButton"_s);

    press(Qt::Key_Space);
    ASSERT_EVENTUALLY(alert());
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    ASSERT_EVENTUALLY(alert() && alert()->heading()->text() == u"Language saved"_s);
    expectFocus(u"OK"_s);
    press(Qt::Key_Return);
    ASSERT_EVENTUALLY(!alert());
    expectFocus(u"languageButton"_s);
    EXPECT_TRUE(
        nxui::saveLanguage(nxui::Product::ThreeD, programLanguage.stored, nxui::homeDirectory()));
}

TEST_F(KeyboardTest, alt_leads_into_the_menus_and_out_again) {
    start();
    const QMenuBar* bar = window()->menuBar();
    press(Qt::Key_Alt, Qt::AltModifier);
    ASSERT_EQ(bar->activeAction(), bar->actions().first());
    press(Qt::Key_Right);
    press(Qt::Key_Down);
    EXPECT_TRUE(bar->actions().at(1)->menu()->isVisible());
    press(Qt::Key_Escape);
    press(Qt::Key_Escape);
    EXPECT_EQ(bar->activeAction(), nullptr);
    expectFocus(u"query"_s);
}

TEST_F(KeyboardTest, the_menus_act_on_what_is_selected) {
    start();
    type(u"Ulm"_s);
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_Alt, Qt::AltModifier);
    press(Qt::Key_Right);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(field("query")->text(), QString()) << "the first item is \"Ausschneiden\"";
    expectFocus(u"query"_s);
}

// The keyboard's own order of a chord: the menus must not take the Alt of Alt and Up for theirs.
TEST_F(KeyboardTest, alt_as_a_part_of_a_shortcut_leads_nowhere) {
    startWithStations({u"A"_s, u"B"_s});
    field("query")->setFocus();
    tabTo(u"stationTable"_s);
    QWindow* keyboard = window()->windowHandle();
    QTest::keyPress(keyboard, Qt::Key_Alt, Qt::AltModifier);
    QTest::keyClick(keyboard, Qt::Key_Up, Qt::AltModifier);
    QTest::keyRelease(keyboard, Qt::Key_Alt);
    EXPECT_EQ(stations(), numbered({u"B"_s, u"A"_s}));
    EXPECT_EQ(window()->menuBar()->activeAction(), nullptr);
    expectFocus(u"stationTable"_s);
}

// --- the keyboard is never lost ---

TEST_F(KeyboardTest, a_search_by_its_button_leads_to_cancel_and_then_to_the_results) {
    start();
    geocoder.behave({{"delay"_L1, 0.2}});
    type(u"Berlin"_s);
    tabTo(u"searchButton"_s);
    press(Qt::Key_Space);
    ASSERT_EVENTUALLY(status() == says::searching);
    expectFocus(u"cancelButton"_s);
    ASSERT_EVENTUALLY(status() == says::choose);
    expectFocus(u"table"_s);
    EXPECT_EQ(window()->selectedResult(), -1) << "the choice is the person's";
    press(Qt::Key_Down);
    EXPECT_EQ(window()->selectedResult(), 0) << "an arrow begins with the first";
}

TEST_F(KeyboardTest, a_job_leads_to_cancel_and_back_however_it_ends) {
    start();
    typeAndSearch(u"Berlin"_s);
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    const struct {
        const char* seconds;
        const char* mode;
        std::function<void()> meanwhile;
        bool fails;
    } ends[] = {
        {"0.2", "", [] {}, false},
        {"0.2", "fail", [] {}, true},
        {"60", "", [] { press(Qt::Key_Space); }, false}, // on "Abbrechen"
    };
    for (const auto& [seconds, mode, meanwhile, fails] : ends) {
        SCOPED_TRACE(mode);
        importer->useStandIn(seconds, mode);
        press(Qt::Key_Space);
        ASSERT_EVENTUALLY(isBusy());
        expectFocus(u"cancelButton"_s);
        meanwhile();
        ASSERT_EVENTUALLY(!isBusy());
        if (fails) {
            ASSERT_EVENTUALLY(alert());
            expectFocus(u"OK"_s);
            press(Qt::Key_Return);
            ASSERT_EVENTUALLY(!alert());
        }
        expectFocus(u"downloadButton"_s);
    }
}

// Assistive technology changes the mode without the focus being there.
TEST_F(KeyboardTest, a_half_that_goes_leads_to_the_mode) {
    start();
    press(Qt::Key_Tab);
    const struct {
        const char* control;
        int mode;
    } changes[] = {{"radius", 1},       {"routeEndpointField", 0}, {"endpointField", 1},
                   {"stationTable", 0}, {"endpoint", 1},           {"query", 0}};
    for (const auto& [name, mode] : changes) {
        SCOPED_TRACE(name);
        control(name)->setFocus(Qt::TabFocusReason);
        QAccessible::queryAccessibleInterface(segments("mode").at(mode))
            ->actionInterface()
            ->doAction(QAccessibleActionInterface::toggleAction());
        ASSERT_TRUE(segments("mode").at(mode)->isChecked());
        expectFocus(QLatin1StringView(name) == "query"_L1 ? u"query"_s : u"mode"_s);
    }
}

// A neighbour that has the focus for a moment would be read out.
TEST_F(KeyboardTest, the_focus_moves_only_once) {
    start();
    type(u"Berlin"_s);
    tabTo(u"searchButton"_s);
    hang();
    QStringList places;
    const auto watch =
        QObject::connect(qApp, &QApplication::focusChanged, qApp, [&] { places += focused(); });
    press(Qt::Key_Space);
    ASSERT_EVENTUALLY(isBusy());
    press(Qt::Key_Escape);
    ASSERT_EVENTUALLY(!isBusy());
    QObject::disconnect(watch);
    EXPECT_EQ(places, QStringList({u"cancelButton"_s, u"searchButton"_s}));
}

} // namespace
