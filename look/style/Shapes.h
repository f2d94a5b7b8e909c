#pragma once

#include <QRegion>
#include <QRgb>

class QPainter;

// The few shapes that every control is made of. Coordinates are logical pixels; edges are moved to
// whole device pixels, so that a one-pixel line stays sharp at fractional scales. Any thread, each
// painter on its own.
namespace look {

// The colours of a control that rises from the window: its face, the line of light at its upper
// edge, its text.
struct Face {
    QRgb fill;
    QRgb top;
    QRgb text;
};

// The next whole device pixel's edge at or above y. The painter would round a baseline to the
// nearest one, and half a pixel further down a letter's tail may be cut off at the end of its line.
qreal onDevicePixel(const QPainter& painter, qreal y);

void fillRounded(QPainter& painter, const QRectF& rectangle, qreal radius, QRgb fill);

// A filled shape with a line of one pixel inside its edge.
void drawBordered(QPainter& painter, const QRectF& rectangle, qreal radius, QRgb fill, QRgb line);

// A filled shape with the line of light.
void drawRaised(QPainter& painter, const QRectF& rectangle, qreal radius, const Face& face);

// The band of `width` pixels around the rectangle.
void drawBand(QPainter& painter, const QRectF& rectangle, qreal radius, qreal width, QRgb fill);

// The pair of arrows of a pop-up in a box of 9 x 14 at `origin`.
void drawChevrons(QPainter& painter, const QPoint& origin, QRgb stroke);

// The tick of a check box in its box of 14 x 14, and the one of a menu row in its row of 24.
void drawBoxTick(QPainter& painter, const QPoint& origin, QRgb stroke);
void drawMenuTick(QPainter& painter, const QPoint& origin, QRgb stroke);

// Every whole pixel that the rounded rectangle touches.
QRegion roundedRegion(const QRect& rectangle, int radius);

// Main thread. Only X11 may lack the compositor that blends a window's round corners with what lies
// behind.
bool needsWindowShape();

} // namespace look
