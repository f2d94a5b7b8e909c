#include "app/FocusKeeper.h"

#include <utility>

namespace app {
namespace {

// Whether the control is in the half of the window that the mode has sent away.
bool wentWithItsHalf(Control control, const ControlStates& states) {
    const Control part = partOf(control);
    const bool isInHalf = part == Control::RoutePane || part == Control::RouteOptions ||
                          part == Control::MapOptions || part == Control::EndpointField;
    return isInHalf && !states.controls[part].isShown;
}

// What a control that can no longer be used hands the keyboard to.
Control successorOf(Control control, const ControlStates& states) {
    if (wentWithItsHalf(control, states))
        return Control::Mode;
    const bool isRouteMode = states.controls[Control::RoutePane].isShown;
    switch (control) {
    case Control::AddStationButton:
    case Control::RemoveStationButton:
    case Control::MoveStationUpButton:
    case Control::MoveStationDownButton:
        return Control::StationTable;
    case Control::DownloadButton:
        return isRouteMode ? Control::StationTable : Control::Table;
    default:
        return Control::Query;
    }
}

} // namespace

std::optional<Control> nextFocus(const FocusQuestion& question) {
    const auto& [focused, before, now, startedFrom, hasFound, states] = question;
    if (!focused || states.canUse(*focused))
        return std::nullopt;
    const bool begins = before == Work::None && now != Work::None;
    const bool ends = before != Work::None && now == Work::None;

    Control next = begins ? Control::CancelButton : successorOf(*focused, states);
    if (ends && focused == Control::CancelButton) {
        const bool goesToPlaces = before == Work::Search && hasFound;
        next = goesToPlaces ? Control::Table : startedFrom.value_or(Control::Query);
    }
    if (states.canUse(next))
        return next;
    return now != Work::None ? Control::CancelButton : Control::Query;
}

std::optional<Control> FocusKeeper::next(std::optional<Control> focused, Work now, bool hasFound,
                                         const ControlStates& states) {
    const Work before = std::exchange(before_, now);
    if (before == Work::None && now != Work::None)
        startedFrom_ = focused;
    return nextFocus({focused, before, now, startedFrom_, hasFound, states});
}

} // namespace app
