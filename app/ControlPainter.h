#pragma once

#include "app/FocusKeeper.h"

namespace app {

class MainWindow;

// Makes the window's controls what the rule says of a state. Nothing else in the program enables,
// hides or titles one of them. Main thread.
class ControlPainter {
public:
    // The focus moves when what has it gets locked or goes (FocusKeeper), and only once.
    void apply(const State& state, MainWindow& window);

private:
    FocusKeeper focus_;
};

} // namespace app
