#include "app/FocusKeeper.h"

#include <gtest/gtest.h>

using namespace app;

namespace {

constexpr State place{.results = 8, .selectedResult = 0};
constexpr State route{
    .isRouteMode = true, .results = 8, .selectedResult = 0, .stations = 2, .selectedStation = 0};

State searching(State state) {
    state.searching = true;
    return state;
}

State importing(State state) {
    state.importing = true;
    return state;
}

State without(State state, auto State::* field) {
    state.*field = {};
    return state;
}

struct Row {
    const char* what;
    std::optional<Control> focused;
    Work before, now;
    std::optional<Control> startedFrom;
    bool hasFound;
    State state;
    std::optional<Control> next; // nothing: the focus stays
};

} // namespace

TEST(FocusKeeper, the_keyboard_goes_where_the_rule_says) {
    constexpr std::nullopt_t stays = std::nullopt;
    const Row rows[] = {
        {"nothing has the focus", stays, Work::None, Work::Job, stays, false, importing(place),
         stays},
        {"a usable control keeps it", Control::Query, Work::None, Work::Search, Control::Query,
         false, searching(place), stays},
        {"a search by the button locks it", Control::SearchButton, Work::None, Work::Search,
         Control::SearchButton, false, searching(place), Control::CancelButton},
        {"a job by the main button", Control::DownloadButton, Work::None, Work::Job,
         Control::DownloadButton, true, importing(place), Control::CancelButton},
        {"a job that began elsewhere", Control::Table, Work::None, Work::Job, Control::Table, true,
         importing(place), Control::CancelButton},
        {"the search has found something", Control::CancelButton, Work::Search, Work::None,
         Control::SearchButton, true, place, Control::Table},
        {"the search has found nothing", Control::CancelButton, Work::Search, Work::None,
         Control::SearchButton, false, State{}, Control::SearchButton},
        {"the person went on typing", Control::Query, Work::Search, Work::None,
         Control::SearchButton, true, place, stays},
        {"the job has ended", Control::CancelButton, Work::Job, Work::None, Control::DownloadButton,
         true, place, Control::DownloadButton},
        {"the job has ended and its button is locked", Control::CancelButton, Work::Job, Work::None,
         Control::DownloadButton, false, State{}, Control::Query},
        {"nobody had started it", Control::CancelButton, Work::Job, Work::None, stays, true, place,
         Control::Query},
        {"an edit ends a search", Control::CancelButton, Work::Search, Work::None, Control::Query,
         false, State{}, Control::Query},
        {"the last result is no longer chosen", Control::DownloadButton, Work::None, Work::None,
         stays, true, State{.results = 8}, Control::Table},
        {"a route without enough stations", Control::DownloadButton, Work::None, Work::None, stays,
         true, without(route, &State::stations), Control::StationTable},
        {"the last station was added", Control::AddStationButton, Work::None, Work::None, stays,
         true, without(route, &State::selectedResult), stays},
        {"no result to add", Control::AddStationButton, Work::None, Work::None, stays, true,
         State{.isRouteMode = true, .results = 8}, Control::StationTable},
        {"the only station was removed", Control::RemoveStationButton, Work::None, Work::None,
         stays, true, State{.isRouteMode = true}, Control::StationTable},
        {"the first station cannot rise", Control::MoveStationUpButton, Work::None, Work::None,
         stays, true, route, Control::StationTable},
        {"the last station cannot sink", Control::MoveStationDownButton, Work::None, Work::None,
         stays, true, State{.isRouteMode = true, .stations = 2, .selectedStation = 1},
         Control::StationTable},
        {"the package is no longer there", Control::FinderButton, Work::None, Work::None, stays,
         true, place, Control::Query},
        {"to the route: the radius goes", Control::Radius, Work::None, Work::None, stays, true,
         route, Control::Mode},
        {"to the route: the address goes", Control::EndpointField, Work::None, Work::None, stays,
         true, route, Control::Mode},
        {"to the place: the stations go", Control::StationTable, Work::None, Work::None, stays,
         true, place, Control::Mode},
        {"to the place: the travel goes", Control::Travel, Work::None, Work::None, stays, true,
         place, Control::Mode},
        {"to the place: the list stays", Control::Table, Work::None, Work::None, stays, true, place,
         stays},
        {"locked while work goes on", Control::StationTable, Work::Search, Work::Search, stays,
         true, importing(route), Control::CancelButton},
    };
    for (const Row& row : rows) {
        const FocusQuestion question{row.focused,     row.before,   row.now,
                                     row.startedFrom, row.hasFound, controlStates(row.state)};
        EXPECT_EQ(nextFocus(question), row.next) << row.what;
    }
}

TEST(FocusKeeper, remembers_what_ran_and_from_where) {
    FocusKeeper keeper;
    const ControlStates idle = controlStates(place);
    EXPECT_EQ(keeper.next(Control::DownloadButton, Work::None, true, idle), std::nullopt);
    EXPECT_EQ(
        keeper.next(Control::DownloadButton, Work::Job, true, controlStates(importing(place))),
        Control::CancelButton);
    EXPECT_EQ(keeper.next(Control::CancelButton, Work::Job, true, controlStates(importing(place))),
              std::nullopt);
    EXPECT_EQ(keeper.next(Control::CancelButton, Work::None, true, idle), Control::DownloadButton);
    // The next work begins elsewhere.
    EXPECT_EQ(
        keeper.next(Control::SearchButton, Work::Search, false, controlStates(searching(State{}))),
        Control::CancelButton);
    EXPECT_EQ(keeper.next(Control::CancelButton, Work::None, false, controlStates({})),
              Control::SearchButton);
}
