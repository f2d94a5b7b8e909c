#pragma once

class QApplication;
class QWidget;

namespace look {

// The ring of three pixels around what has the keyboard: a field on any focus, a button, a pop-up
// or segments if the keyboard brought the focus, a list while nothing is selected in it. Never in a
// window that is not active. Main thread.

// Starts keeping the ring. Called once, by applyLook.
void keepFocusRing(QApplication& application);

// To be called when something changed that only the control knows, such as its selection.
void refreshFocusRing();

// For tests: the control that wears the ring now, or null.
QWidget* ringedControl();

} // namespace look
