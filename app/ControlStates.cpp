#include "app/ControlStates.h"

using namespace Qt::StringLiterals;

namespace app {
namespace {

/// A control that edits the station list, for a station `offset` away from the selected one.
bool canReach(const ControlInput& input, int offset) {
    const int row = input.selectedStation;
    const bool selected = row >= 0 && row < input.stations;
    return !input.importing && selected && row + offset >= 0 && row + offset < input.stations;
}

QString downloadTitle(const ControlInput& input) {
    if (input.isRouteMode)
        return input.importing ? u"Berechnet …"_s : u"Route berechnen"_s;
    return input.importing ? u"Lädt …"_s : u"Ortsdaten laden"_s;
}

} // namespace

ControlStates controlStates(const ControlInput& input) {
    const bool busy = input.searching || input.importing;
    const bool resultSelected = input.selectedResult >= 0 && input.selectedResult < input.results;
    const bool editable = !input.importing;
    return {
        .mode = !busy,
        .languageButton = !busy,
        .query = editable,
        .searchButton = !busy,
        .radius = editable,
        .endpoint = editable,
        .endpointField = editable,
        .endpointFieldEditable = editable && input.endpointIndex == customEndpoint,
        .table = editable,
        .stationTable = editable,
        .routeEndpointField = editable,
        .travel = editable,
        .routeMapCheckbox = false,
        .addStationButton = !busy && resultSelected && input.stations < jobs::mostStations,
        .removeStationButton = canReach(input, 0),
        .moveStationUpButton = canReach(input, -1),
        .moveStationDownButton = canReach(input, +1),
        .downloadButton = !busy && (input.isRouteMode ? input.stations >= 2 : resultSelected),
        .downloadTitle = downloadTitle(input),
        .cancelHidden = !busy,
        .finderHidden = !input.hasCompleted,
        .spinning = busy,
        .stationCount = input.stations,
    };
}

} // namespace app
