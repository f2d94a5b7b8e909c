#pragma once

#include "jobs/StationList.h"

#include <QString>

namespace app {

// What of the window's state the controls depend on.
struct ControlInput {
    bool isRouteMode = false;
    bool searching = false;
    bool importing = false;
    qsizetype results = 0;
    int selectedResult = -1; // a row of the results, or -1
    qsizetype stations = 0;
    int selectedStation = -1;  // a row of the stations, or -1
    int endpointIndex = 0;     // the data service's place in its pop-up
    bool hasCompleted = false; // a finished package can be shown
};

// The data services of the pop-up that need an address typed or not.
inline constexpr int directEndpoint = 0;
inline constexpr int customEndpoint = 3;

// Every enabled, hidden, editable and title of the window that follows from the state.
struct ControlStates {
    bool mode, languageButton, query, searchButton;
    bool radius, endpoint, endpointField, endpointFieldEditable;
    bool table, stationTable, routeEndpointField, travel;
    bool routeMapCheckbox; // always false: it only says what every route brings
    bool addStationButton, removeStationButton, moveStationUpButton, moveStationDownButton;
    bool downloadButton;
    QString downloadTitle; // German
    bool cancelHidden, finderHidden;
    bool spinning;
    qsizetype stationCount;

    bool operator==(const ControlStates&) const = default;
};

// The one rule for every control. Pure. What starts work is locked while any work runs; what only
// edits the next job's inputs stays usable during a search.
ControlStates controlStates(const ControlInput& input);

} // namespace app
