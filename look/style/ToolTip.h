#pragma once

#include <QString>

class QApplication;
class QPoint;
class QWidget;

namespace look {

// The one way to a tooltip: plain text whatever it holds, wrapped at 360 pixels, at most 24 lines
// and never longer than the screen is high. Stays until the pointer leaves the widget or anything
// is pressed. `position`: the pointer, in screen coordinates. An empty text hides the tooltip. Main
// thread.
void showToolTip(const QPoint& position, const QString& text, QWidget* owner);
void hideToolTip();

// From now on every widget's tooltip goes this way, and the text that an Elidable elides. Called
// once, by applyLook.
void keepToolTipsPlain(QApplication& application);

// For tests: the tooltip on screen, or null.
QWidget* shownToolTip();

} // namespace look
