
// Where the keyboard goes when the control that has it is locked or leaves the window. The one
// rule:
//
// - Nobody's focus is moved while its control can be used.
// - Work that begins and locks the control that started it hands the focus to "Abbrechen".
// - Work that ends takes "Abbrechen" away. Who still waits there goes to the places that a search
//   has found, and otherwise back to where the work was started.
// - A button that has nothing left to do hands the focus to the list that it works on.
// - A half of the window that goes hands the focus to what sent it away, the choice of the mode.
// - What is left goes to the search field, where everything begins.
//
// An alert or a dialog needs nothing: the window keeps its focus meanwhile.

#include "app/NXImportApp.h"
#include "look/controls/Button.h"
#include "look/controls/Field.h"
#include "look/controls/PlaceList.h"
#include "look/controls/Segments.h"

namespace app {
namespace {

// Whether a control of the window can have the focus once `usable` is in force.
bool staysUsable(const QWidget* control, const Usable& usable) {
    if (!control || !control->isVisibleTo(control->window()))
        return false;
    for (const auto& [each, isUsable] : usable)
        if (!isUsable && (each == control || each->isAncestorOf(control)))
            return false;
    return true;
}

} // namespace

// The list that a button works on; the search field for every other control.
QWidget* NXImportApp::worksOn(const QWidget* control) const {
    const MainWindow& w = *window_;
    const bool editsStations = control == w.addStationButton || control == w.removeStationButton ||
                               control == w.moveStationUpButton ||
                               control == w.moveStationDownButton;
    if (editsStations || (control == w.downloadButton && routeMode()))
        return w.stationTable;
    if (control == w.downloadButton)
        return w.table;
    return w.query;
}

// Enables or shows, disables or hides each control. What is locked while it has the focus would
// pass it to a neighbour, which assistive technology reads out: the focus moves first, and only
// once.
void NXImportApp::setUsable(const Usable& usable) {
    const auto apply = [&](bool isUsable) {
        for (const auto& [control, each] : usable) {
            if (each != isUsable)
                continue;
            if (control == window_->cancelButton || control == window_->finderButton)
                control->setVisible(isUsable);
            else
                control->setEnabled(isUsable);
        }
    };
    apply(true);
    keepFocus(usable);
    apply(false);
}

void NXImportApp::keepFocus(const Usable& usable) {
    const MainWindow& w = *window_;
    QWidget* const focused = w.focusWidget();
    const bool begins = busy() && !wasBusy_;
    const bool ends = wasBusy_ && !busy();
    wasBusy_ = busy();
    if (begins) {
        startedFrom_ = focused;
        startedSearch_ = searching_;
    }
    if (!focused || staysUsable(focused, usable))
        return;

    QWidget* next = begins ? w.cancelButton : worksOn(focused);
    if (ends && focused == w.cancelButton) {
        const bool hasFound = startedSearch_ && !results_.isEmpty();
        next = hasFound ? w.table : startedFrom_.data();
    }
    if (!staysUsable(next, usable))
        next = busy() ? static_cast<QWidget*>(w.cancelButton) : w.query;
    // As if by Tab, so that the ring shows where the keyboard is in use; a field would select its
    // whole text then, and the next letter replace it.
    next->setFocus(qobject_cast<QLineEdit*>(next) ? Qt::OtherFocusReason : Qt::TabFocusReason);
}

void NXImportApp::leaveHalf(bool isRouteMode) {
    const MainWindow& w = *window_;
    const QWidget* focused = w.focusWidget();
    const auto holds = [focused](const QWidget* part) {
        return focused && (part == focused || part->isAncestorOf(focused));
    };
    if (isRouteMode ? holds(w.mapOptions) || holds(w.endpointField)
                    : holds(w.routePane) || holds(w.routeOptions))
        w.mode->setFocus(Qt::TabFocusReason);
}

} // namespace app
