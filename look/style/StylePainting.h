#pragma once

#include <QStyleOption>

class QPainter;

// How the style draws each control: from the toolkit's description of it to pixels. Coordinates are
// the option's. Main thread.
namespace look {

void drawButton(QPainter& painter, const QStyleOptionButton& option, const QWidget* widget);
void drawPopUp(QPainter& painter, const QStyleOptionComboBox& option, const QRect& text,
               const QRect& chevrons);
void drawField(QPainter& painter, const QStyleOption& option, const QWidget* widget);
// `option` is that of the frame around the control.
void drawFocusRing(QPainter& painter, const QStyleOption& option, const QWidget& control);
// The well of a list and its border.
void drawWell(QPainter& painter, const QStyleOption& option);
void drawCheckBox(QPainter& painter, const QStyleOption& option);
void drawCheckBoxTitle(QPainter& painter, const QStyleOptionButton& option);
void drawScrollThumb(QPainter& painter, const QStyleOptionSlider& option, const QRect& thumb);

void drawMenuPanel(QPainter& painter, const QRect& rectangle);
void drawMenuRow(QPainter& painter, const QStyleOptionMenuItem& option);
QSize menuRowSize(const QStyleOptionMenuItem& option, const QSize& contents);
void drawMenuBarItem(QPainter& painter, const QStyleOptionMenuItem& option);

} // namespace look
