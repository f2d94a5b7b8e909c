#include "app/ControlPainter.h"

#include "app/MainWindow.h"
#include "localization/NXLocal.h"
#include "look/controls/Button.h"
#include "look/controls/Field.h"
#include "look/controls/PlaceList.h"
#include "look/controls/Spinner.h"
#include "look/text/Label.h"

namespace app {

using localization::filled;
using localization::NXLocal;

namespace {

// What gets enabled or shown, or else what gets disabled or hidden. A control that never hides is
// left to its parent.
enum class Turn { On, Off };

void turn(Turn direction, const ControlStates& states, MainWindow& window) {
    const bool on = direction == Turn::On;
    for (std::size_t i = 0; i < controlCount; ++i) {
        QWidget* const widget = window.widget(Control(i));
        const auto& [isEnabled, isShown] = states.controls[Control(i)];
        if (isEnabled == on)
            widget->setEnabled(on);
        const bool isHiddenByUs =
            widget->isHidden() && widget->testAttribute(Qt::WA_WState_ExplicitShowHide);
        if (isShown == on && isHiddenByUs == on)
            widget->setVisible(on);
    }
}

// As if by Tab, so that the ring shows where the keyboard is in use; a field would select its whole
// text then, and the next letter replace it.
void focus(QWidget* widget) {
    widget->setFocus(qobject_cast<QLineEdit*>(widget) ? Qt::OtherFocusReason : Qt::TabFocusReason);
}

} // namespace

void ControlPainter::apply(const State& state, MainWindow& window) {
    const ControlStates states = controlStates(state);
    const Work work = state.importing ? Work::Job : state.searching ? Work::Search : Work::None;
    turn(Turn::On, states, window);
    // What is locked while it has the focus would pass it to a neighbour, which assistive
    // technology reads out: the focus moves before.
    if (const auto next = focus_.next(window.focusedControl(), work, state.results > 0, states))
        focus(window.widget(*next));
    turn(Turn::Off, states, window);
    window.endpointField->setReadOnly(!states.isEndpointFieldEditable);
    window.downloadButton->setTitle(NXLocal(states.downloadTitle));
    const QString counter = filled(NXLocal(u"Stationen · %lu / 32"), {states.stationCount});
    window.stationHint->setText(counter);
    if (window.stationTable->accessibleName() != counter)
        window.stationTable->setAccessibleName(counter);
    window.spinner->setTurning(states.isBusy);
    window.status->setBusy(states.isBusy);
}

} // namespace app
