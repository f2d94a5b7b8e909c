#include "look/style/Shapes.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>

#include <cmath>

using namespace Qt::StringLiterals;

namespace look {
namespace {

bool isWhole(qreal number) {
    return qFuzzyCompare(number + 1, std::round(number) + 1);
}

// The length of one logical pixel's line in logical units, a whole number of device pixels.
qreal lineWidth(const QPainter& painter) {
    const qreal scale = painter.deviceTransform().m11();
    return isWhole(scale) || scale <= 0 ? 1 : qMax<qreal>(1, std::floor(scale)) / scale;
}

QRectF onDevicePixels(const QPainter& painter, const QRectF& rectangle) {
    const QTransform transform = painter.deviceTransform();
    if (isWhole(transform.m11()) || transform.type() > QTransform::TxScale)
        return rectangle;
    const QRectF mapped = transform.mapRect(rectangle);
    const QPointF topLeft(std::round(mapped.left()), std::round(mapped.top()));
    const QPointF bottomRight(std::round(mapped.right()), std::round(mapped.bottom()));
    return transform.inverted().mapRect(QRectF(topLeft, bottomRight));
}

void drawTick(QPainter& painter, const QPoint& origin, const QPointF (&points)[3], qreal width,
              QRgb stroke) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(origin);
    painter.setPen(QPen(QColor(stroke), width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(points, 3);
    painter.restore();
}

} // namespace

qreal onDevicePixel(const QPainter& painter, qreal y) {
    const QTransform transform = painter.deviceTransform();
    if (isWhole(transform.m22()) || transform.type() > QTransform::TxScale)
        return y;
    constexpr qreal rounding = 0.01;
    const qreal mapped = std::floor(transform.map(QPointF(0, y)).y() + rounding);
    return transform.inverted().map(QPointF(0, mapped)).y();
}

void fillRounded(QPainter& painter, const QRectF& rectangle, qreal radius, QRgb fill) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(fill));
    painter.drawRoundedRect(onDevicePixels(painter, rectangle), radius, radius);
    painter.restore();
}

void drawBordered(QPainter& painter, const QRectF& rectangle, qreal radius, QRgb fill, QRgb line) {
    // Two fills cost a third of a fill and a stroke.
    const qreal width = lineWidth(painter);
    const QRectF outer = onDevicePixels(painter, rectangle);
    fillRounded(painter, outer, radius, line);
    fillRounded(painter, outer.adjusted(width, width, -width, -width), radius - width, fill);
}

void drawRaised(QPainter& painter, const QRectF& rectangle, qreal radius, const Face& face) {
    const QRectF whole = onDevicePixels(painter, rectangle);
    fillRounded(painter, whole, radius, face.fill);
    // What the shape leaves free of itself when it is moved down by the width of the line.
    QPainterPath light;
    light.addRoundedRect(whole, radius, radius);
    light.addRoundedRect(whole.translated(0, lineWidth(painter)), radius, radius);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    // Lower down the two edges meet, and what is left between them would only brighten the side.
    painter.setClipRect(QRectF(whole.topLeft(), QSizeF(whole.width(), 3)), Qt::IntersectClip);
    painter.fillPath(light, QColor(face.top));
    painter.restore();
}

void drawBand(QPainter& painter, const QRectF& rectangle, qreal radius, qreal width, QRgb fill) {
    const QRectF outer = onDevicePixels(painter, rectangle.adjusted(-width, -width, width, width));
    QPainterPath band;
    band.setFillRule(Qt::OddEvenFill);
    band.addRoundedRect(outer, radius + width, radius + width);
    band.addRoundedRect(onDevicePixels(painter, rectangle), radius, radius);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(band, QColor(fill));
    painter.restore();
}

void drawChevrons(QPainter& painter, const QPoint& origin, QRgb stroke) {
    drawTick(painter, origin, {{1.5, 5}, {4.5, 2}, {7.5, 5}}, 1.5, stroke);
    drawTick(painter, origin, {{1.5, 9}, {4.5, 12}, {7.5, 9}}, 1.5, stroke);
}

void drawBoxTick(QPainter& painter, const QPoint& origin, QRgb stroke) {
    drawTick(painter, origin, {{3.6, 7.4}, {6, 9.7}, {10.4, 4.3}}, 1.6, stroke);
}

void drawMenuTick(QPainter& painter, const QPoint& origin, QRgb stroke) {
    drawTick(painter, origin, {{2.5, 12.5}, {5, 15}, {9.5, 9}}, 1.6, stroke);
}

QRegion roundedRegion(const QRect& rectangle, int radius) {
    QRegion region(rectangle.adjusted(0, radius, 0, -radius));
    for (int row = 0; row < radius; ++row) {
        // The lower edge of the row lies nearest to the circle's middle and is the widest.
        const qreal height = radius - row - 1;
        const int inset = int(std::floor(radius - std::sqrt(radius * radius - height * height)));
        const int width = rectangle.width() - 2 * inset;
        region += QRect(rectangle.left() + inset, rectangle.top() + row, width, 1);
        region += QRect(rectangle.left() + inset, rectangle.bottom() - row, width, 1);
    }
    return region;
}

bool needsWindowShape() {
    return QGuiApplication::platformName() == "xcb"_L1;
}

} // namespace look
