#pragma once

class QApplication;

namespace look {

// From now on the second press of a double click does nothing where the first one fell on another
// widget: what a press took away, a button or a dialog, leaves something else under the pointer
// that nobody meant. Called once, by applyLook. Main thread.
void keepDoubleClicksTogether(QApplication& application);

} // namespace look
