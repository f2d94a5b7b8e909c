// What a screen reader hears, and what the keyboard reaches.

#include "WindowTest.h"
#include "look/controls/Glyphs.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace app;

namespace {

QAccessibleInterface* spoken(QObject* object) {
    return QAccessible::queryAccessibleInterface(object);
}

QString nameOf(QObject* object) {
    return spoken(object)->text(QAccessible::Name);
}

bool isRelated(QAccessibleInterface* one, QAccessibleInterface* other,
               QAccessible::RelationFlag relation) {
    return one->relations(relation).contains(std::pair(other, QAccessible::Relation(relation)));
}

// The names of the labels that are related to a control, and it to them: screen readers ask one or
// the other.
QStringList captionsOf(QObject* object) {
    QStringList names;
    for (const auto& [other, relation] : spoken(object)->relations(QAccessible::Label))
        if (relation & QAccessible::Label &&
            isRelated(other, spoken(object), QAccessible::Labelled))
            names += other->text(QAccessible::Name);
    return names;
}

class AccessibilityTest : public WindowTest {
protected:
    // The names of the controls that Tab visits, from the search field once around.
    QStringList tabStops(Qt::Key key = Qt::Key_Tab) {
        QStringList names;
        field("query")->setFocus();
        do {
            names += nameOfStop(QApplication::focusWidget());
            this->key(QApplication::focusWidget(), key,
                      key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
        } while (QApplication::focusWidget() != field("query") && names.size() < 40);
        return names;
    }

private:
    // A segment has no name of its own.
    static QString nameOfStop(const QWidget* widget) {
        return widget->objectName().isEmpty() ? widget->parentWidget()->objectName()
                                              : widget->objectName();
    }
};

TEST_F(AccessibilityTest, every_control_has_a_name_and_a_role) {
    start();
    const struct {
        const char* control;
        QAccessible::Role role;
        QString name;
    } controls[] = {
        {"mode", QAccessible::Grouping, u""_s},
        {"query", QAccessible::EditableText, u"Stadt, Ort oder Adresse weltweit"_s},
        {"searchButton", QAccessible::Button, u"Suchen"_s},
        {"hint", QAccessible::StaticText, u"Suchergebnisse · wähle einen Ort aus"_s},
        {"placeholder", QAccessible::StaticText, u"Ergebnisse erscheinen nach der Suche"_s},
        {"table", QAccessible::List, u"Suchergebnisse · wähle einen Ort aus"_s},
        {"stationHint", QAccessible::StaticText, u"Stationen · 0 / 32"_s},
        {"stationTable", QAccessible::List, u"Stationen · 0 / 32"_s},
        {"addStationButton", QAccessible::Button, u"Als Station hinzufügen"_s},
        {"removeStationButton", QAccessible::Button, u"Entfernen"_s},
        {"moveStationUpButton", QAccessible::Button, u"Hoch"_s},
        {"moveStationDownButton", QAccessible::Button, u"Runter"_s},
        {"endpointField", QAccessible::EditableText, u"Datendienst"_s},
        {"travel", QAccessible::Grouping, u"Reiseart"_s},
        {"routeMapCheckbox", QAccessible::CheckBox, u"3D-Paket: Gebäude, Straßen, Gelände"_s},
        {"routeEndpointField", QAccessible::EditableText,
         u"Routingdienst · eigene HTTPS-Adresse optional"_s},
        {"status", QAccessible::StaticText, u"Gib einen Ort ein und starte die Suche."_s},
        {"cancelButton", QAccessible::Button, u"Abbrechen"_s},
        {"languageButton", QAccessible::Button, u"Sprache"_s},
        {"finderButton", QAccessible::Button, u"Ordner zeigen"_s},
        {"downloadButton", QAccessible::Button, u"Ortsdaten laden"_s},
        {"subtitle", QAccessible::StaticText,
         u"Ortsdaten mit Gebäuden und Gelände für Norvaxel 3D"_s},
    };
    for (const auto& [name, role, words] : controls) {
        EXPECT_EQ(spoken(control(name))->role(), role) << name;
        const bool isNamed = role != QAccessible::Grouping || !words.isEmpty();
        EXPECT_EQ(isNamed ? nameOf(control(name)) : QString(), words) << name;
    }
    EXPECT_EQ(nameOf(window()), u"Norvaxel 3D · Orte und Routen"_s);
    auto* glyph = window()->findChild<look::BuildingGlyph*>();
    EXPECT_EQ(nameOf(glyph), u"Norvaxel 3D"_s);
}

TEST_F(AccessibilityTest, a_pop_up_is_named_by_its_caption_and_its_entry_is_told_once) {
    start();
    const struct {
        const char* control;
        QString caption;
        QString entry;
    } popUps[] = {{"radius", u"Umkreis"_s, u"2 km"_s},
                  {"endpoint", u"Datendienst"_s, u"Eigene HTTPS-Adresse"_s}};
    for (const auto& [name, caption, entry] : popUps) {
        choose(name, 3);
        EXPECT_EQ(captionsOf(control(name)), QStringList(caption));
        EXPECT_EQ(nameOf(control(name)), caption);
        EXPECT_EQ(spoken(control(name))->role(), QAccessible::ComboBox);
        EXPECT_EQ(spoken(control(name))->text(QAccessible::Value), entry);
        // Before 6.8 AT-SPI is not told the value.
        const bool isValueHeard = QT_VERSION >= QT_VERSION_CHECK(6, 8, 0);
        EXPECT_EQ(spoken(control(name))->text(QAccessible::Description),
                  isValueHeard ? QString() : entry);
    }
}

TEST_F(AccessibilityTest, what_only_holds_others_is_not_told_of) {
    start();
    // A group without a name: a screen reader passes over it.
    EXPECT_EQ(spoken(window()->centralWidget())->role(), QAccessible::Grouping);
    EXPECT_EQ(nameOf(window()->centralWidget()), QString());
}

TEST_F(AccessibilityTest, a_tooltip_is_the_description_of_its_control) {
    start(Mode::Route);
    for (const char* name :
         {"languageButton", "travel", "routeEndpointField", "routeMapCheckbox", "status"}) {
        EXPECT_FALSE(control(name)->toolTip().isEmpty()) << name;
        EXPECT_EQ(spoken(control(name))->text(QAccessible::Description), control(name)->toolTip())
            << name;
    }
}

TEST_F(AccessibilityTest, an_example_is_told_only_where_something_can_be_typed) {
    start();
    const auto expect = [this](const char* name, const QString& example) {
        EXPECT_EQ(field(name)->placeholderText(), example) << name;
        const QString told = field(name)->toolTip().isEmpty() ? example : field(name)->toolTip();
        EXPECT_EQ(spoken(field(name))->text(QAccessible::Description), told) << name;
    };
    expect("query", u"Stadt, Ort oder Adresse weltweit"_s);
    field("query")->setText(u"Berlin"_s);
    expect("query", QString());
    expect("endpointField", QString()); // full and read-only
    choose("endpoint", 3);
    expect("endpointField", u"https://overpass.example.org/api/interpreter"_s);
    field("endpointField")->setReadOnly(true); // as during an import
    expect("endpointField", QString());
    expect("routeEndpointField", QString());
    field("routeEndpointField")->clear();
    expect("routeEndpointField", u"https://routing.example.org/routed-car/route/v1/driving"_s);
}

TEST_F(AccessibilityTest, what_is_elided_has_its_whole_text_for_a_description) {
    start();
    const auto description = [](QWidget* widget) {
        return spoken(widget)->text(QAccessible::Description);
    };
    auto* search = button("searchButton"); // its width is fixed
    auto* hint = control<look::Label>("hint");
    EXPECT_EQ(description(search), QString());
    EXPECT_EQ(description(hint), QString());
    const QString whole = QString(40, u'W') + u" & <b>Söhne</b>"_s;
    search->setTitle(whole);
    hint->setText(whole.repeated(4));
    EXPECT_EQ(description(search), whole);
    EXPECT_EQ(description(search), toolTipAt(search, {5, 5}));
    EXPECT_EQ(description(hint), whole.repeated(4));
    EXPECT_EQ(description(hint), toolTipAt(hint, {5, 5}));
    search->setTitle(u"Suchen"_s);
    hint->setText(u"Treffer"_s);
    EXPECT_EQ(description(search), QString());
    EXPECT_EQ(description(hint), QString());
}

TEST_F(AccessibilityTest, a_segment_is_a_radio_button_in_a_group) {
    start(Mode::Route);
    for (const char* name : {"mode", "travel"}) {
        QStringList names;
        int chosen = 0;
        for (QRadioButton* segment : segments(name)) {
            QAccessibleInterface* radio = spoken(segment);
            EXPECT_EQ(radio->role(), QAccessible::RadioButton);
            EXPECT_EQ(radio->parent()->object(), control(name));
            names += radio->text(QAccessible::Name);
            chosen += radio->state().checked ? 1 : 0;
        }
        EXPECT_EQ(chosen, 1);
        EXPECT_EQ(names, QLatin1StringView(name) == "mode"_L1
                             ? QStringList({u"Ortskarte"_s, u"Route"_s})
                             : QStringList({u"Auto"_s, u"Zug"_s, u"Flug"_s}));
    }
}

TEST_F(AccessibilityTest, assistive_technology_can_press_and_choose) {
    start();
    QAccessibleActionInterface* route = spoken(segments("mode").at(1))->actionInterface();
    ASSERT_NE(route, nullptr);
    route->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(status(), says::routeReady);
    spoken(control("searchButton"))
        ->actionInterface()
        ->doAction(QAccessibleActionInterface::pressAction());
    // The button shows for a moment that it is pressed.
    EXPECT_EVENTUALLY(status() == says::badQuery);
}

TEST_F(AccessibilityTest, what_is_not_shown_is_not_heard) {
    start();
    for (const char* name : {"cancelButton", "finderButton", "stationTable", "routeEndpointField"})
        EXPECT_TRUE(spoken(control(name))->state().invisible) << name;
    EXPECT_FALSE(spoken(control("placeholder"))->state().invisible);
    EXPECT_TRUE(spoken(control("endpointField"))->state().readOnly);
    EXPECT_TRUE(spoken(control("downloadButton"))->state().disabled);
}

TEST_F(AccessibilityTest, nothing_under_a_dialog_is_heard_until_it_goes) {
    start();
    const auto heard = [this] {
        QStringList names;
        for (const QWidget* each : shown<QWidget>(window()->centralWidget()))
            if (!each->objectName().isEmpty() && !each->objectName().startsWith("qt_"_L1))
                names += each->objectName();
        return names;
    };
    const QStringList before = heard();
    ASSERT_GT(before.size(), 10);
    click(button("languageButton"));
    EXPECT_EQ(heard(), QStringList(u"languages"_s));
    EXPECT_TRUE(spoken(control("query"))->state().invisible);
    EXPECT_FALSE(spoken(alert())->state().invisible);
    QAccessibleInterface* above = spoken(alert());
    while (above->object() != window())
        above = above->parent();
    EXPECT_EQ(above->role(), QAccessible::Window);
    alert()->reject();
    EXPECT_EQ(heard(), before);
    settle();
}

TEST_F(AccessibilityTest, tab_follows_the_eye_in_place_mode) {
    start();
    const QStringList stops{u"query"_s,    u"searchButton"_s,  u"table"_s,          u"radius"_s,
                            u"endpoint"_s, u"endpointField"_s, u"languageButton"_s, u"mode"_s};
    EXPECT_EQ(tabStops(), stops);
    QStringList backwards = stops;
    std::reverse(backwards.begin() + 1, backwards.end());
    EXPECT_EQ(tabStops(Qt::Key_Backtab), backwards);
}

TEST_F(AccessibilityTest, tab_follows_the_eye_in_route_mode) {
    start(Mode::Route);
    EXPECT_EQ(tabStops(),
              QStringList({u"query"_s, u"searchButton"_s, u"table"_s, u"stationTable"_s,
                           u"travel"_s, u"routeEndpointField"_s, u"languageButton"_s, u"mode"_s}));
}

// Also through what cannot be used or is not shown at first.
TEST_F(AccessibilityTest, tab_follows_the_eye_through_every_control) {
    start();
    QStringList chain;
    QWidget* first = field("query");
    for (QWidget* next = first; chain.isEmpty() || next != first; next = next->nextInFocusChain())
        if (next->focusPolicy() & Qt::TabFocus && !next->objectName().isEmpty() &&
            window()->centralWidget()->isAncestorOf(next) &&
            !next->objectName().startsWith("qt_"_L1))
            chain += next->objectName();
    EXPECT_EQ(chain, QStringList({u"query"_s, u"searchButton"_s, u"table"_s, u"addStationButton"_s,
                                  u"stationTable"_s, u"removeStationButton"_s,
                                  u"moveStationUpButton"_s, u"moveStationDownButton"_s, u"radius"_s,
                                  u"endpoint"_s, u"endpointField"_s, u"routeMapCheckbox"_s,
                                  u"routeEndpointField"_s, u"cancelButton"_s, u"languageButton"_s,
                                  u"finderButton"_s, u"downloadButton"_s}));
}

TEST_F(AccessibilityTest, arrows_move_between_the_segments) {
    start();
    const auto mode = segments("mode");
    mode.at(0)->setFocus(Qt::TabFocusReason);
    key(QApplication::focusWidget(), Qt::Key_Right);
    EXPECT_TRUE(mode.at(1)->isChecked());
    EXPECT_TRUE(mode.at(1)->hasFocus());
    EXPECT_EQ(status(), says::routeReady);
    key(QApplication::focusWidget(), Qt::Key_Right);
    EXPECT_TRUE(mode.at(1)->isChecked()) << "there is no third one";

    const auto travel = segments("travel");
    travel.at(0)->setFocus(Qt::TabFocusReason);
    for (const int expected : {1, 2, 2}) {
        key(QApplication::focusWidget(), Qt::Key_Down);
        EXPECT_TRUE(travel.at(expected)->isChecked());
    }
    for (const int expected : {1, 0, 0}) {
        key(QApplication::focusWidget(), Qt::Key_Left);
        EXPECT_TRUE(travel.at(expected)->isChecked());
    }

    mode.at(1)->setFocus(Qt::TabFocusReason);
    key(QApplication::focusWidget(), Qt::Key_Left);
    EXPECT_TRUE(mode.at(0)->isChecked());
    EXPECT_EQ(status(), says::ready);
}

TEST_F(AccessibilityTest, tab_enters_a_group_at_its_chosen_segment) {
    start(Mode::Route);
    click(segments("travel").at(2));
    field("routeEndpointField")->setFocus();
    key(field("routeEndpointField"), Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_TRUE(segments("travel").at(2)->hasFocus());
}

} // namespace
