#pragma once

class QApplication;

namespace app {

// Gives the application what the program's window stands on: the look, the letters and the
// direction of the interface's language, which this settles for the run. Before the controller.
// Main thread.
void compose(QApplication& application);

} // namespace app
