#include "app/ControlStates.h"

#include <gtest/gtest.h>

#include <set>

using namespace Qt::StringLiterals;
using namespace app;

namespace {

constexpr State placeWithSelection{.results = 8, .selectedResult = 0};
constexpr State routeWithSelection{
    .isRouteMode = true, .results = 8, .selectedResult = 7, .stations = 3, .selectedStation = 1};

State with(State state, auto State::* field, auto value) {
    state.*field = value;
    return state;
}

constexpr Control all[] = {Control::Mode,
                           Control::Query,
                           Control::SearchButton,
                           Control::Table,
                           Control::AddStationButton,
                           Control::StationTable,
                           Control::RemoveStationButton,
                           Control::MoveStationUpButton,
                           Control::MoveStationDownButton,
                           Control::Radius,
                           Control::Endpoint,
                           Control::EndpointField,
                           Control::Travel,
                           Control::RouteMapCheckbox,
                           Control::RouteEndpointField,
                           Control::CancelButton,
                           Control::LanguageButton,
                           Control::FinderButton,
                           Control::DownloadButton};

// Those of `all` that are enabled, and those that a person can use: they are also shown.
std::set<Control> enabled(const State& state) {
    std::set<Control> found;
    for (const Control control : all)
        if (controlStates(state).controls[control].isEnabled)
            found.insert(control);
    return found;
}

std::set<Control> usable(const State& state) {
    std::set<Control> found;
    for (const Control control : all)
        if (controlStates(state).canUse(control))
            found.insert(control);
    return found;
}

bool isEnabled(const State& state, Control control) {
    return controlStates(state).controls[control].isEnabled;
}

bool isShown(const State& state, Control control) {
    return controlStates(state).controls[control].isShown;
}

} // namespace

TEST(ControlStates, the_first_state_of_the_window) {
    EXPECT_EQ(usable({}), (std::set{Control::Mode, Control::Query, Control::SearchButton,
                                    Control::Table, Control::Radius, Control::Endpoint,
                                    Control::EndpointField, Control::LanguageButton}));
    EXPECT_EQ(usable({.isRouteMode = true}),
              (std::set{Control::Mode, Control::Query, Control::SearchButton, Control::Table,
                        Control::StationTable, Control::Travel, Control::RouteEndpointField,
                        Control::LanguageButton}));
    EXPECT_FALSE(controlStates({}).isEndpointFieldEditable);
    EXPECT_FALSE(controlStates({}).isBusy);
    EXPECT_EQ(controlStates({}).stationCount, 0);
}

TEST(ControlStates, each_half_is_shown_in_its_mode_only) {
    for (const bool route : {false, true}) {
        for (State state : {placeWithSelection, with(placeWithSelection, &State::importing, true),
                            with(placeWithSelection, &State::searching, true)}) {
            state.isRouteMode = route;
            EXPECT_EQ(isShown(state, Control::RoutePane), route);
            EXPECT_EQ(isShown(state, Control::RouteOptions), route);
            EXPECT_EQ(isShown(state, Control::MapOptions), !route);
            EXPECT_EQ(isShown(state, Control::EndpointField), !route);
        }
    }
}

TEST(ControlStates, a_search_locks_what_starts_work_and_nothing_else) {
    for (const State& idle : {placeWithSelection, routeWithSelection}) {
        std::set<Control> expected = enabled(idle);
        for (const Control starts : {Control::Mode, Control::LanguageButton, Control::SearchButton,
                                     Control::AddStationButton, Control::DownloadButton})
            expected.erase(starts);
        const State searching = with(idle, &State::searching, true);
        EXPECT_EQ(enabled(searching), expected);
        EXPECT_TRUE(isShown(searching, Control::CancelButton));
        EXPECT_FALSE(isShown(idle, Control::CancelButton));
        EXPECT_TRUE(controlStates(searching).isBusy);
        EXPECT_EQ(controlStates(searching).downloadTitle, controlStates(idle).downloadTitle);
    }
}

TEST(ControlStates, a_job_locks_everything_but_cancel) {
    for (const bool route : {false, true}) {
        State state = with(routeWithSelection, &State::isRouteMode, route);
        state.importing = true;
        state.endpointIndex = customEndpoint;
        EXPECT_EQ(usable(state), std::set{Control::CancelButton});
        EXPECT_FALSE(controlStates(state).isEndpointFieldEditable);
        EXPECT_TRUE(controlStates(state).isBusy);
    }
}

TEST(ControlStates, a_station_is_added_up_to_the_32nd) {
    State state = with(routeWithSelection, &State::stations, qsizetype{31});
    EXPECT_TRUE(isEnabled(state, Control::AddStationButton));
    state.stations = 32;
    EXPECT_FALSE(isEnabled(state, Control::AddStationButton));
    state.stations = 31;
    state.searching = true;
    EXPECT_FALSE(isEnabled(state, Control::AddStationButton));
}

TEST(ControlStates, a_result_must_be_selected_to_be_added_or_imported) {
    struct Case {
        int selected;
        bool isValid;
    };
    for (const auto& [selected, isValid] : {Case{-1, false}, {0, true}, {7, true}, {8, false}}) {
        const State state = with(placeWithSelection, &State::selectedResult, selected);
        EXPECT_EQ(isEnabled(state, Control::DownloadButton), isValid) << selected;
        EXPECT_EQ(isEnabled(state, Control::AddStationButton), isValid) << selected;
    }
}

TEST(ControlStates, a_route_needs_two_stations_and_no_selection) {
    for (const qsizetype count : {0, 1, 2, 32}) {
        const State state{.isRouteMode = true, .stations = count};
        EXPECT_EQ(isEnabled(state, Control::DownloadButton), count >= 2) << count;
        EXPECT_EQ(controlStates(state).stationCount, count);
    }
}

TEST(ControlStates, stations_move_within_the_list) {
    struct Case {
        int selected;
        bool remove, up, down;
    };
    for (const bool searching : {false, true}) {
        for (const Case& c : {Case{-1, false, false, false},
                              {0, true, false, true},
                              {1, true, true, true},
                              {2, true, true, false},
                              {3, false, false, false}}) {
            State state = with(routeWithSelection, &State::selectedStation, c.selected);
            state.searching = searching;
            EXPECT_EQ(isEnabled(state, Control::RemoveStationButton), c.remove) << c.selected;
            EXPECT_EQ(isEnabled(state, Control::MoveStationUpButton), c.up) << c.selected;
            EXPECT_EQ(isEnabled(state, Control::MoveStationDownButton), c.down) << c.selected;
        }
    }
}

TEST(ControlStates, only_the_custom_service_is_editable) {
    for (int index = 0; index <= customEndpoint; ++index) {
        const State state{.endpointIndex = index};
        EXPECT_EQ(controlStates(state).isEndpointFieldEditable, index == customEndpoint);
        EXPECT_TRUE(isEnabled(state, Control::EndpointField));
    }
}

TEST(ControlStates, the_main_title_follows_mode_and_job) {
    struct Case {
        bool route, searching, importing;
        const char16_t* title;
    };
    for (const Case& c : {Case{false, false, false, u"Ortsdaten laden"},
                          {false, true, false, u"Ortsdaten laden"},
                          {false, false, true, u"Lädt …"},
                          {true, false, false, u"Route berechnen"},
                          {true, true, false, u"Route berechnen"},
                          {true, false, true, u"Berechnet …"}}) {
        const State state{
            .isRouteMode = c.route, .searching = c.searching, .importing = c.importing};
        EXPECT_EQ(controlStates(state).downloadTitle, QString::fromUtf16(c.title));
    }
}

TEST(ControlStates, a_finished_package_can_be_shown_also_while_busy) {
    EXPECT_FALSE(isShown({}, Control::FinderButton));
    EXPECT_TRUE(isShown({.hasCompleted = true}, Control::FinderButton));
    EXPECT_TRUE(isShown({.searching = true, .hasCompleted = true}, Control::FinderButton));
}

TEST(ControlStates, the_map_check_box_is_never_enabled) {
    for (const bool searching : {false, true})
        for (const bool importing : {false, true})
            for (const bool route : {false, true})
                EXPECT_FALSE(isEnabled(
                    {.isRouteMode = route, .searching = searching, .importing = importing},
                    Control::RouteMapCheckbox));
}

TEST(ControlStates, what_lies_in_a_hidden_part_cannot_be_used) {
    EXPECT_EQ(partOf(Control::Radius), Control::MapOptions);
    EXPECT_EQ(partOf(Control::StationTable), Control::RoutePane);
    EXPECT_EQ(partOf(Control::Travel), Control::RouteOptions);
    EXPECT_EQ(partOf(Control::Query), Control::Query);
    EXPECT_TRUE(isEnabled({}, Control::StationTable));
    EXPECT_FALSE(controlStates({}).canUse(Control::StationTable));
}
