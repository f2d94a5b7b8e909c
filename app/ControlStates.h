#pragma once

#include "jobs/StationList.h"

#include <QString>

#include <array>
#include <cstddef>

namespace app {

// What of the window a rule speaks of: its controls, and the parts of it that belong to one mode.
// Each is named as in MainWindow.
enum class Control {
    Mode,
    Query,
    SearchButton,
    Table,
    RoutePane,
    AddStationButton,
    StationTable,
    RemoveStationButton,
    MoveStationUpButton,
    MoveStationDownButton,
    MapOptions,
    Radius,
    Endpoint,
    EndpointField,
    RouteOptions,
    Travel,
    RouteMapCheckbox,
    RouteEndpointField,
    CancelButton,
    LanguageButton,
    FinderButton,
    DownloadButton,
};

inline constexpr std::size_t controlCount = std::size_t(Control::DownloadButton) + 1;

// One value for each of them.
template<typename Value>
struct PerControl {
    std::array<Value, controlCount> values{};

    Value& operator[](Control control) { return values[std::size_t(control)]; }
    const Value& operator[](Control control) const { return values[std::size_t(control)]; }
    bool operator==(const PerControl&) const = default;
};

// The state of the program, as far as its controls depend on it.
struct State {
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

// Two places in the pop-up of the data services: the OSM API itself, and the service whose address
// the person types.
inline constexpr int directEndpoint = 0;
inline constexpr int customEndpoint = 3;

struct ControlState {
    bool isEnabled = true;
    bool isShown = true;

    bool operator==(const ControlState&) const = default;
};

// Every enabled, shown, editable and title of the window that follows from the state.
struct ControlStates {
    PerControl<ControlState> controls;
    bool isEndpointFieldEditable = false;
    QString downloadTitle; // German
    bool isBusy = false;   // the spinner turns
    qsizetype stationCount = 0;

    // Whether a person can use the control: it is enabled, and it and what holds it are shown.
    bool canUse(Control control) const;
    bool operator==(const ControlStates&) const = default;
};

// The one rule for every control. Pure; any thread. What starts work is locked while any work runs;
// what only edits the next job's inputs stays usable during a search.
ControlStates controlStates(const State& state);

// The part of the window that holds the control and belongs to one mode; the control itself where
// there is none. Pure; any thread.
Control partOf(Control control);

} // namespace app
