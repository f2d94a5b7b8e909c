#include "app/ControlStates.h"

using namespace Qt::StringLiterals;

namespace app {
namespace {

// A control that edits the station list, for a station `offset` away from the selected one.
bool canReach(const State& state, int offset) {
    const int row = state.selectedStation;
    const bool isSelected = row >= 0 && row < state.stations;
    return !state.importing && isSelected && row + offset >= 0 && row + offset < state.stations;
}

QString downloadTitle(const State& state) {
    if (state.isRouteMode)
        return state.importing ? u"Berechnet …"_s : u"Route berechnen"_s;
    return state.importing ? u"Lädt …"_s : u"Ortsdaten laden"_s;
}

} // namespace

ControlStates controlStates(const State& state) {
    const bool isBusy = state.searching || state.importing;
    const bool isResultSelected = state.selectedResult >= 0 && state.selectedResult < state.results;
    ControlStates states;
    states.isEndpointFieldEditable = !state.importing && state.endpointIndex == customEndpoint;
    states.downloadTitle = downloadTitle(state);
    states.isBusy = isBusy;
    states.stationCount = state.stations;
    const auto enable = [&](Control control, bool isEnabled) {
        states.controls[control].isEnabled = isEnabled;
    };
    const auto show = [&](Control control, bool isShown) {
        states.controls[control].isShown = isShown;
    };

    for (const Control starts : {Control::Mode, Control::LanguageButton, Control::SearchButton})
        enable(starts, !isBusy);
    for (const Control edits :
         {Control::Query, Control::Radius, Control::Endpoint, Control::EndpointField,
          Control::Table, Control::StationTable, Control::RouteEndpointField, Control::Travel})
        enable(edits, !state.importing);
    // It only says what every route brings.
    enable(Control::RouteMapCheckbox, false);
    enable(Control::AddStationButton,
           !isBusy && isResultSelected && state.stations < jobs::mostStations);
    enable(Control::RemoveStationButton, canReach(state, 0));
    enable(Control::MoveStationUpButton, canReach(state, -1));
    enable(Control::MoveStationDownButton, canReach(state, +1));
    enable(Control::DownloadButton,
           !isBusy && (state.isRouteMode ? state.stations >= 2 : isResultSelected));

    show(Control::RoutePane, state.isRouteMode);
    show(Control::RouteOptions, state.isRouteMode);
    show(Control::MapOptions, !state.isRouteMode);
    show(Control::EndpointField, !state.isRouteMode);
    show(Control::CancelButton, isBusy);
    show(Control::FinderButton, state.hasCompleted);
    return states;
}

Control partOf(Control control) {
    switch (control) {
    case Control::AddStationButton:
    case Control::StationTable:
    case Control::RemoveStationButton:
    case Control::MoveStationUpButton:
    case Control::MoveStationDownButton:
        return Control::RoutePane;
    case Control::Radius:
    case Control::Endpoint:
        return Control::MapOptions;
    case Control::Travel:
    case Control::RouteMapCheckbox:
    case Control::RouteEndpointField:
        return Control::RouteOptions;
    default:
        return control;
    }
}

bool ControlStates::canUse(Control control) const {
    const ControlState& state = controls[control];
    return state.isEnabled && state.isShown && controls[partOf(control)].isShown;
}

} // namespace app
