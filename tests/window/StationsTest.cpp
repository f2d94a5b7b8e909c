// The stations of a route: how they are collected, ordered and removed, and what the window says.

#include "SearchWindowTest.h"

#include <QScrollBar>

const ProgramLanguage programLanguage{"de", ""};

namespace {

// The buttons that edit the station list.
struct Editable {
    bool remove, up, down;
    bool operator==(const Editable&) const = default;
};
void PrintTo(const Editable& can, std::ostream* out) {
    *out << "remove " << can.remove << ", up " << can.up << ", down " << can.down;
}

class StationsTest : public SearchWindowTest {
protected:
    Editable editable() const {
        return {control("removeStationButton")->isEnabled(),
                control("moveStationUpButton")->isEnabled(),
                control("moveStationDownButton")->isEnabled()};
    }

    // Every way to ask for an edit, also those that a disabled button does not offer.
    void tryEveryEdit() {
        for (const char* name : {"addStationButton", "removeStationButton", "moveStationUpButton",
                                 "moveStationDownButton"})
            Q_EMIT button(name)->clicked();
        stationKey(Qt::Key_Delete);
        stationKey(Qt::Key_Up, Qt::AltModifier);
        stationKey(Qt::Key_Down, Qt::AltModifier);
    }
};

TEST_F(StationsTest, the_first_is_the_start_and_the_others_are_added_at_the_end) {
    startWithResults({u"Köln"_s, u"Bonn"_s, u"Ulm"_s});
    click(button("addStationButton"));
    EXPECT_EQ(status(), says::startSet);
    EXPECT_FALSE(statusIsRed());
    EXPECT_EQ(text("stationHint"), u"Stationen · 1 / 32"_s);
    EXPECT_EQ(selectedStation(), 0);
    for (const int row : {1, 2}) {
        clickRow(row);
        EXPECT_EQ(status(), says::resultChosen);
        click(button("addStationButton"));
        EXPECT_EQ(status(), says::stationAdded);
        EXPECT_EQ(selectedStation(), row) << "the new one is selected";
    }
    EXPECT_EQ(stations(), QStringList({u"1 · Köln"_s, u"2 · Bonn"_s, u"3 · Ulm"_s}));
    EXPECT_EQ(text("stationHint"), u"Stationen · 3 / 32"_s);
    EXPECT_EQ(window()->selectedResult(), 2) << "the results stay";
    EXPECT_EQ(rows().size(), 3);
}

TEST_F(StationsTest, one_that_was_added_leads_to_the_search_for_the_next) {
    startWithResults({u"A"_s, u"B"_s});
    ASSERT_FALSE(field("query")->text().isEmpty());
    for (const bool byButton : {true, false}) {
        list("table")->setFocus();
        if (byButton)
            click(button("addStationButton"));
        else
            key(list("table"), Qt::Key_Return);
        EXPECT_EQ(QApplication::focusWidget(), field("query"));
        EXPECT_EQ(field("query")->selectedText(), field("query")->text());
    }
}

TEST_F(StationsTest, the_same_place_may_be_added_twice) {
    startWithResults({u"Köln"_s});
    for (const QString& said : {says::startSet, says::stationAdded, says::stationAdded}) {
        click(button("addStationButton"));
        EXPECT_EQ(status(), said);
    }
    EXPECT_EQ(stations(), numbered({u"Köln"_s, u"Köln"_s, u"Köln"_s}));
}

TEST_F(StationsTest, a_station_shows_its_number_its_name_and_its_detail) {
    start(Mode::Route);
    offer({feature(u"Köln"_s, {{"country"_L1, u"Deutschland"_s}}, 6.9578, 50.9422)});
    addResult(0);
    const QModelIndex row = list("stationTable")->model()->index(0, 0);
    EXPECT_EQ(row.data(look::PlaceListModel::detailRole), u"Deutschland · 50.9422, 6.9578"_s);
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(list("stationTable"));
    ASSERT_EQ(spoken->childCount(), 1);
    EXPECT_EQ(spoken->child(0)->text(QAccessible::Name),
              u"1 · Köln\nDeutschland · 50.9422, 6.9578"_s);
}

TEST_F(StationsTest, a_stations_name_is_shown_literally) {
    const QString name = u"%ld %@ %1 <b>&amp;</b> & Söhne"_s;
    startWithStations({name, name});
    EXPECT_EQ(stations(), QStringList({u"1 · "_s + name, u"2 · "_s + name}));
}

TEST_F(StationsTest, only_what_lies_on_earth_can_become_a_station) {
    start(Mode::Route);
    offer({feature(u"zu weit"_s, {}, 200, 10), feature(u"zu hoch"_s, {}, 10, 95),
           feature(u"am Rand"_s, {}, 180, -90)});
    EXPECT_EQ(rows(), QStringList(u"am Rand\n-90.0000, 180.0000"_s));
    addResult(0);
    EXPECT_EQ(status(), says::startSet);
    EXPECT_EQ(stations(), numbered({u"am Rand"_s}));
}

TEST_F(StationsTest, a_new_search_and_an_edit_of_its_text_keep_the_stations) {
    startWithStations({u"Köln"_s, u"Bonn"_s});
    clickStation(0);
    QTest::keyClicks(field("query"), u"x"_s);
    EXPECT_EQ(status(), u"Neuen Ort suchen. Deine bisherigen Stationen bleiben erhalten."_s);
    EXPECT_EQ(rows(), QStringList());
    EXPECT_FALSE(control("addStationButton")->isEnabled());
    offer({u"Ulm"_s});
    EXPECT_EQ(stations(), numbered({u"Köln"_s, u"Bonn"_s}));
    EXPECT_EQ(selectedStation(), 0);
}

TEST_F(StationsTest, the_thirty_third_is_not_added) {
    startWithResults({u"Köln"_s});
    for (int count = 1; count <= 31; ++count) {
        ASSERT_TRUE(control("addStationButton")->isEnabled()) << count;
        click(button("addStationButton"));
    }
    EXPECT_EQ(stations().size(), 31);
    EXPECT_TRUE(control("addStationButton")->isEnabled());
    click(button("addStationButton"));
    EXPECT_EQ(stations().size(), 32);
    EXPECT_EQ(stations().last(), u"32 · Köln"_s);
    EXPECT_EQ(text("stationHint"), u"Stationen · 32 / 32"_s);
    EXPECT_FALSE(control("addStationButton")->isEnabled());
    EXPECT_TRUE(control("downloadButton")->isEnabled());

    stationKey(Qt::Key_Home);
    clickRow(0);
    const QString before = status();
    click(button("addStationButton"));
    Q_EMIT button("addStationButton")->clicked();
    key(list("table"), Qt::Key_Return);
    doubleClickRow(0);
    EXPECT_EQ(stations().size(), 32);
    EXPECT_EQ(status(), before);
    EXPECT_EQ(selectedStation(), 0) << "the selection stays";

    stationKey(Qt::Key_Delete);
    EXPECT_TRUE(control("addStationButton")->isEnabled());
    click(button("addStationButton"));
    EXPECT_EQ(stations().size(), 32);
}

TEST_F(StationsTest, what_was_added_or_moved_is_scrolled_into_view) {
    startWithResults({u"Köln"_s, u"Bonn"_s});
    for (int count = 0; count < 12; ++count) {
        click(button("addStationButton"));
        EXPECT_TRUE(stationIsInView(count)) << count;
    }
    ASSERT_FALSE(stationIsInView(0)) << "the list is not long enough for this test";
    QScrollBar* bar = list("stationTable")->verticalScrollBar();
    bar->setValue(0);
    addResult(1);
    EXPECT_TRUE(stationIsInView(12));

    bar->setValue(0);
    click(button("moveStationUpButton"));
    EXPECT_EQ(selectedStation(), 11);
    EXPECT_TRUE(stationIsInView(11)) << "from out of sight";
    for (int row = 10; row >= 0; --row) {
        stationKey(Qt::Key_Up, Qt::AltModifier);
        ASSERT_EQ(selectedStation(), row);
        EXPECT_TRUE(stationIsInView(row));
    }
    bar->setValue(bar->maximum());
    click(button("moveStationDownButton"));
    EXPECT_EQ(selectedStation(), 1);
    EXPECT_TRUE(stationIsInView(1));
}

TEST_F(StationsTest, a_removed_one_hands_its_selection_to_the_one_in_its_place) {
    startWithStations({u"A"_s, u"B"_s, u"C"_s, u"D"_s});
    clickStation(1);
    click(button("removeStationButton"));
    EXPECT_EQ(status(), says::stationRemoved);
    EXPECT_FALSE(statusIsRed());
    EXPECT_EQ(stations(), numbered({u"A"_s, u"C"_s, u"D"_s})) << "numbered anew";
    EXPECT_EQ(selectedStation(), 1);
    EXPECT_EQ(text("stationHint"), u"Stationen · 3 / 32"_s);
}

TEST_F(StationsTest, a_removed_last_one_hands_its_selection_to_the_new_last_one) {
    startWithStations({u"A"_s, u"B"_s, u"C"_s});
    ASSERT_EQ(selectedStation(), 2);
    click(button("removeStationButton"));
    EXPECT_EQ(stations(), numbered({u"A"_s, u"B"_s}));
    EXPECT_EQ(selectedStation(), 1);
}

TEST_F(StationsTest, removing_the_only_one_leaves_nothing_and_is_told) {
    startWithStations({u"A"_s});
    click(button("removeStationButton"));
    EXPECT_EQ(stations(), QStringList());
    EXPECT_EQ(selectedStation(), -1);
    EXPECT_EQ(status(), says::stationRemoved);
    EXPECT_EQ(text("stationHint"), u"Stationen · 0 / 32"_s);
    EXPECT_EQ(editable(), (Editable{false, false, false}));
    addResult(0);
    EXPECT_EQ(status(), says::startSet) << "the next one is a start again";
}

TEST_F(StationsTest, a_moved_one_stays_selected) {
    startWithStations({u"A"_s, u"B"_s, u"C"_s});
    click(button("moveStationUpButton"));
    EXPECT_EQ(status(), says::stationMoved);
    EXPECT_FALSE(statusIsRed());
    EXPECT_EQ(stations(), numbered({u"A"_s, u"C"_s, u"B"_s}));
    EXPECT_EQ(selectedStation(), 1);
    click(button("moveStationUpButton"));
    EXPECT_EQ(stations(), numbered({u"C"_s, u"A"_s, u"B"_s}));
    EXPECT_EQ(selectedStation(), 0);
    click(button("moveStationDownButton"));
    EXPECT_EQ(stations(), numbered({u"A"_s, u"C"_s, u"B"_s}));
    EXPECT_EQ(selectedStation(), 1);
}

TEST_F(StationsTest, moving_the_first_up_or_the_last_down_does_nothing_and_keeps_the_status) {
    startWithStations({u"A"_s, u"B"_s});
    const struct {
        int row;
        Qt::Key key;
        const char* button;
    } moves[] = {{0, Qt::Key_Up, "moveStationUpButton"},
                 {1, Qt::Key_Down, "moveStationDownButton"}};
    for (const auto& [row, key, name] : moves) {
        SCOPED_TRACE(row);
        clickStation(row);
        EXPECT_FALSE(control(name)->isEnabled());
        const QString before = status();
        stationKey(key, Qt::AltModifier);
        Q_EMIT button(name)->clicked();
        EXPECT_EQ(stations(), numbered({u"A"_s, u"B"_s}));
        EXPECT_EQ(selectedStation(), row);
        EXPECT_EQ(status(), before);
    }
}

TEST_F(StationsTest, the_buttons_follow_the_selection) {
    startWithStations({u"A"_s, u"B"_s, u"C"_s});
    const struct {
        int row;
        Editable can;
    } selections[] = {{0, {true, false, true}}, {1, {true, true, true}}, {2, {true, true, false}}};
    for (const auto& [row, can] : selections) {
        clickStation(row);
        EXPECT_EQ(editable(), can) << row;
    }
    list("stationTable")->clearSelection();
    EXPECT_EQ(editable(), (Editable{false, false, false}));
}

TEST_F(StationsTest, without_a_selection_nothing_is_removed_or_moved) {
    startWithStations({u"A"_s, u"B"_s});
    list("stationTable")->clearSelection();
    list("table")->clearSelection();
    const QString before = status();
    tryEveryEdit();
    EXPECT_EQ(stations(), numbered({u"A"_s, u"B"_s}));
    EXPECT_EQ(status(), before);
}

TEST_F(StationsTest, an_empty_list_has_nothing_to_remove_or_to_move) {
    start(Mode::Route);
    tryEveryEdit();
    EXPECT_EQ(stations(), QStringList());
    EXPECT_EQ(status(), says::routeReady);
}

TEST_F(StationsTest, keys_remove_and_move_the_selected_one) {
    startWithStations({u"A"_s, u"B"_s, u"C"_s});
    stationKey(Qt::Key_Up, Qt::AltModifier);
    EXPECT_EQ(stations(), numbered({u"A"_s, u"C"_s, u"B"_s}));
    EXPECT_EQ(status(), says::stationMoved);
    EXPECT_EQ(selectedStation(), 1);
    stationKey(Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(stations(), numbered({u"A"_s, u"B"_s, u"C"_s}));
    EXPECT_EQ(selectedStation(), 2);
    stationKey(Qt::Key_Delete);
    EXPECT_EQ(stations(), numbered({u"A"_s, u"B"_s}));
    EXPECT_EQ(status(), says::stationRemoved);
    EXPECT_EQ(selectedStation(), 1);
    stationKey(Qt::Key_Up);
    EXPECT_EQ(selectedStation(), 0) << "the arrow alone moves the selection";
    EXPECT_EQ(stations(), numbered({u"A"_s, u"B"_s}));
}

TEST_F(StationsTest, the_keys_stand_in_the_tooltips_of_the_buttons) {
    startWithStations({u"A"_s, u"B"_s});
    EXPECT_EQ(toolTipAt(button("removeStationButton"), {5, 5}), u"Del"_s);
    EXPECT_EQ(toolTipAt(button("moveStationUpButton"), {5, 5}), u"Alt+Up"_s);
    EXPECT_EQ(toolTipAt(button("moveStationDownButton"), {5, 5}), u"Alt+Down"_s);
}

TEST_F(StationsTest, the_keys_belong_to_the_station_list_alone) {
    startWithStations({u"A"_s, u"B"_s});
    for (const char* name : {"query", "table", "routeEndpointField", "removeStationButton"}) {
        SCOPED_TRACE(name);
        control(name)->setFocus();
        key(control(name), Qt::Key_Delete);
        key(control(name), Qt::Key_Up, Qt::AltModifier);
        EXPECT_EQ(stations(), numbered({u"A"_s, u"B"_s}));
    }
}

TEST_F(StationsTest, return_and_a_double_click_on_a_result_add_it_in_route_mode) {
    startWithResults({u"A"_s, u"B"_s, u"C"_s});
    EXPECT_EQ(stations(), QStringList()) << "one click only selects";
    key(list("table"), Qt::Key_Return);
    EXPECT_EQ(stations(), numbered({u"A"_s}));
    EXPECT_EQ(status(), says::startSet);
    doubleClickRow(1);
    EXPECT_EQ(stations(), numbered({u"A"_s, u"B"_s}));
    list("table")->setFocus();
    key(list("table"), Qt::Key_Down);
    key(list("table"), Qt::Key_Enter);
    EXPECT_EQ(stations(), numbered({u"A"_s, u"B"_s, u"C"_s}));
    EXPECT_EQ(status(), says::stationAdded);
    EXPECT_EQ(selectedStation(), 2);
}

TEST_F(StationsTest, return_and_a_double_click_on_a_result_lead_to_the_main_button_in_place_mode) {
    start();
    offer({u"A"_s, u"B"_s});
    for (const bool byKey : {true, false}) {
        clickRow(0);
        if (byKey)
            key(list("table"), Qt::Key_Return);
        else
            doubleClickRow(1);
        EXPECT_EQ(QApplication::focusWidget(), button("downloadButton"));
        EXPECT_EQ(status(), says::chosen);
        EXPECT_FALSE(isBusy());
        EXPECT_EQ(stations(), QStringList());
    }
}

TEST_F(StationsTest, a_running_search_blocks_adding_but_neither_removing_nor_moving) {
    startWithStations({u"A"_s, u"B"_s, u"C"_s});
    geocoder.behave({{"hang"_L1, true}});
    search(u"Berlin"_s);
    ASSERT_TRUE(isBusy());
    EXPECT_FALSE(control("addStationButton")->isEnabled());
    Q_EMIT button("addStationButton")->clicked();
    EXPECT_EQ(stations().size(), 3);
    EXPECT_EQ(status(), says::searching);

    click(button("moveStationUpButton"));
    EXPECT_EQ(stations(), numbered({u"A"_s, u"C"_s, u"B"_s}));
    EXPECT_EQ(status(), says::stationMoved);
    click(button("removeStationButton"));
    EXPECT_EQ(stations(), numbered({u"A"_s, u"B"_s}));
    EXPECT_EQ(status(), says::stationRemoved);
    EXPECT_TRUE(isBusy()) << "the search goes on";
    click(button("cancelButton"));
}

TEST_F(StationsTest, a_running_job_blocks_every_edit) {
    startWithStations({u"A"_s, u"B"_s, u"C"_s});
    clickStation(1);
    clickRow(0);
    importer->useStandIn("60");
    click(button("downloadButton"));
    ASSERT_EQ(status(), says::routeLoading);
    EXPECT_EQ(editable(), (Editable{false, false, false}));
    tryEveryEdit();
    key(list("table"), Qt::Key_Return);
    EXPECT_EQ(stations(), numbered({u"A"_s, u"B"_s, u"C"_s}));
    EXPECT_EQ(status(), says::routeLoading);
    click(button("cancelButton"));
    ASSERT_EVENTUALLY(!isBusy());
    EXPECT_EQ(selectedStation(), 1);
    EXPECT_EQ(editable(), (Editable{true, true, true}));
}

TEST_F(StationsTest, a_change_of_mode_keeps_the_stations_and_their_selection) {
    startWithStations({u"A"_s, u"B"_s, u"C"_s});
    clickStation(1);
    chooseMode(0);
    EXPECT_FALSE(list("stationTable")->isVisible());
    chooseMode(1);
    EXPECT_EQ(stations(), numbered({u"A"_s, u"B"_s, u"C"_s}));
    EXPECT_EQ(selectedStation(), 1);
    EXPECT_EQ(text("stationHint"), u"Stationen · 3 / 32"_s);
    EXPECT_EQ(editable(), (Editable{true, true, true}));
    EXPECT_EQ(status(), says::routeReady);
}

TEST_F(StationsTest, the_lists_spoken_name_is_its_counter) {
    startWithResults({u"A"_s});
    const auto name = [&] {
        return QAccessible::queryAccessibleInterface(list("stationTable"))->text(QAccessible::Name);
    };
    EXPECT_EQ(name(), u"Stationen · 0 / 32"_s);
    for (int count = 1; count <= 2; ++count) {
        click(button("addStationButton"));
        EXPECT_EQ(name(), u"Stationen · %1 / 32"_s.arg(count));
    }
    click(button("removeStationButton"));
    EXPECT_EQ(name(), u"Stationen · 1 / 32"_s);
    EXPECT_EQ(name(), text("stationHint"));
}

} // namespace
