#pragma once

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

} // namespace app
