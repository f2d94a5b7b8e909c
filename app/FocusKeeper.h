#pragma once

#include "app/ControlStates.h"

#include <optional>

namespace app {

// What runs, of which there is one at a time as far as the keyboard is concerned.
enum class Work { None, Search, Job };

// All that decides where the keyboard goes when the window's controls change.
struct FocusQuestion {
    std::optional<Control> focused; // what has the keyboard; nothing that a rule speaks of, or none
    Work before = Work::None;       // what ran until now
    Work now = Work::None;          // what runs from now on
    std::optional<Control> startedFrom{}; // what had the keyboard when the work began
    bool hasFound = false;                // there are places to choose from
    ControlStates states{};               // how the controls will be
};

// Where the keyboard goes; nothing where it stays. Pure; any thread.
//
// - Nobody's focus is moved while its control can be used.
// - Work that begins and locks the control that started it hands the focus to "Abbrechen".
// - Work that ends takes "Abbrechen" away. Who still waits there goes to the places that a search
//   has found, and otherwise back to where the work was started.
// - A button that has nothing left to do hands the focus to the list that it works on.
// - A half of the window that goes hands the focus to what sent it away, the choice of the mode.
// - What is left goes to the search field, where everything begins.
std::optional<Control> nextFocus(const FocusQuestion& question);

// Remembers for nextFocus what ran and from where it was started. An alert or a dialog needs
// nothing of this: the window keeps its focus meanwhile. Main thread.
class FocusKeeper {
public:
    // To be asked with every change of the controls, before what gets locked or hidden is so.
    std::optional<Control> next(std::optional<Control> focused, Work now, bool hasFound,
                                const ControlStates& states);

private:
    Work before_ = Work::None;
    std::optional<Control> startedFrom_;
};

} // namespace app
