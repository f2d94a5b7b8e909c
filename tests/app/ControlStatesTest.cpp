#include "app/ControlStates.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace app;

namespace {

constexpr ControlInput placeWithSelection{.results = 8, .selectedResult = 0};
constexpr ControlInput routeWithSelection{
    .isRouteMode = true, .results = 8, .selectedResult = 7, .stations = 3, .selectedStation = 1};

ControlInput with(ControlInput input, auto ControlInput::* field, auto value) {
    input.*field = value;
    return input;
}

} // namespace

TEST(ControlStates, the_first_state_of_the_window) {
    const ControlStates expected{.mode = true,
                                 .languageButton = true,
                                 .query = true,
                                 .searchButton = true,
                                 .radius = true,
                                 .endpoint = true,
                                 .endpointField = true,
                                 .endpointFieldEditable = false,
                                 .table = true,
                                 .stationTable = true,
                                 .routeEndpointField = true,
                                 .travel = true,
                                 .routeMapCheckbox = false,
                                 .addStationButton = false,
                                 .removeStationButton = false,
                                 .moveStationUpButton = false,
                                 .moveStationDownButton = false,
                                 .downloadButton = false,
                                 .downloadTitle = u"Ortsdaten laden"_s,
                                 .cancelHidden = true,
                                 .finderHidden = true,
                                 .spinning = false,
                                 .stationCount = 0};
    EXPECT_EQ(controlStates({}), expected);
}

TEST(ControlStates, a_search_locks_what_starts_work_and_nothing_else) {
    for (const ControlInput& idle : {placeWithSelection, routeWithSelection}) {
        ControlStates expected = controlStates(idle);
        expected.mode = expected.languageButton = expected.searchButton = false;
        expected.addStationButton = expected.downloadButton = false;
        expected.cancelHidden = false;
        expected.spinning = true;
        EXPECT_EQ(controlStates(with(idle, &ControlInput::searching, true)), expected);
    }
}

TEST(ControlStates, a_job_locks_everything_but_cancel) {
    for (const bool route : {false, true}) {
        auto input = with(routeWithSelection, &ControlInput::isRouteMode, route);
        input.importing = true;
        input.endpointIndex = customEndpoint;
        const ControlStates expected{.mode = false,
                                     .languageButton = false,
                                     .query = false,
                                     .searchButton = false,
                                     .radius = false,
                                     .endpoint = false,
                                     .endpointField = false,
                                     .endpointFieldEditable = false,
                                     .table = false,
                                     .stationTable = false,
                                     .routeEndpointField = false,
                                     .travel = false,
                                     .routeMapCheckbox = false,
                                     .addStationButton = false,
                                     .removeStationButton = false,
                                     .moveStationUpButton = false,
                                     .moveStationDownButton = false,
                                     .downloadButton = false,
                                     .downloadTitle = route ? u"Berechnet …"_s : u"Lädt …"_s,
                                     .cancelHidden = false,
                                     .finderHidden = true,
                                     .spinning = true,
                                     .stationCount = 3};
        EXPECT_EQ(controlStates(input), expected);
    }
}

TEST(ControlStates, a_station_is_added_up_to_the_32nd) {
    auto input = with(routeWithSelection, &ControlInput::stations, qsizetype{31});
    EXPECT_TRUE(controlStates(input).addStationButton);
    input.stations = 32;
    EXPECT_FALSE(controlStates(input).addStationButton);
    input.stations = 31;
    input.searching = true;
    EXPECT_FALSE(controlStates(input).addStationButton);
}

TEST(ControlStates, a_result_must_be_selected_to_be_added_or_imported) {
    struct Case {
        int selected;
        bool valid;
    };
    for (const auto& [selected, valid] : {Case{-1, false}, {0, true}, {7, true}, {8, false}}) {
        auto input = with(placeWithSelection, &ControlInput::selectedResult, selected);
        EXPECT_EQ(controlStates(input).downloadButton, valid) << selected;
        EXPECT_EQ(controlStates(input).addStationButton, valid) << selected;
    }
}

TEST(ControlStates, a_route_needs_two_stations_and_no_selection) {
    for (const qsizetype count : {0, 1, 2, 32}) {
        const ControlInput input{.isRouteMode = true, .stations = count};
        EXPECT_EQ(controlStates(input).downloadButton, count >= 2) << count;
        EXPECT_EQ(controlStates(input).stationCount, count);
    }
}

TEST(ControlStates, stations_move_within_the_list) {
    struct Case {
        int selected;
        bool remove, up, down;
    };
    for (const Case& c : {Case{-1, false, false, false},
                          {0, true, false, true},
                          {1, true, true, true},
                          {2, true, true, false},
                          {3, false, false, false}}) {
        const auto states =
            controlStates(with(routeWithSelection, &ControlInput::selectedStation, c.selected));
        EXPECT_EQ(states.removeStationButton, c.remove) << c.selected;
        EXPECT_EQ(states.moveStationUpButton, c.up) << c.selected;
        EXPECT_EQ(states.moveStationDownButton, c.down) << c.selected;
    }
}

TEST(ControlStates, a_running_search_does_not_lock_the_station_list) {
    const auto states = controlStates(with(routeWithSelection, &ControlInput::searching, true));
    EXPECT_TRUE(states.removeStationButton && states.moveStationUpButton &&
                states.moveStationDownButton && states.stationTable);
}

TEST(ControlStates, only_the_custom_service_is_editable) {
    for (int index = 0; index <= customEndpoint; ++index) {
        const auto states = controlStates({.endpointIndex = index});
        EXPECT_EQ(states.endpointFieldEditable, index == customEndpoint);
        EXPECT_TRUE(states.endpointField);
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
        const ControlInput input{
            .isRouteMode = c.route, .searching = c.searching, .importing = c.importing};
        EXPECT_EQ(controlStates(input).downloadTitle, QString::fromUtf16(c.title));
    }
}

TEST(ControlStates, a_finished_package_can_be_shown_also_while_busy) {
    EXPECT_FALSE(controlStates({.hasCompleted = true}).finderHidden);
    EXPECT_FALSE(controlStates({.searching = true, .hasCompleted = true}).finderHidden);
}

TEST(ControlStates, the_map_check_box_is_never_enabled) {
    for (const bool searching : {false, true})
        for (const bool importing : {false, true})
            for (const bool route : {false, true})
                EXPECT_FALSE(
                    controlStates(
                        {.isRouteMode = route, .searching = searching, .importing = importing})
                        .routeMapCheckbox);
}
