#include "look/controls/Glyphs.h"

#include "look/style/Colours.h"

#include <QPainter>

namespace look {
namespace {

// A window of the building: a square of 3 with corners of 0.6, or wider.
void addPane(QPainterPath& path, qreal x, qreal y, qreal width) {
    path.addRoundedRect(QRectF(x, y, width, 3), 0.6, 0.6);
}

// A quarter circle to `end` whose corner, if it were not round, would be `corner`.
void turn(QPainterPath& path, QPointF corner, QPointF end) {
    constexpr qreal circle = 0.5522847498;
    const QPointF start = path.currentPosition();
    path.cubicTo(start + (corner - start) * circle, end + (corner - end) * circle, end);
}

// A box of the icon in a picture of `side` pixels; its colours at its upper and its lower edge.
struct IconBox {
    int side;
    QRectF place;
    qreal radius;
    QRgb top;
    QRgb bottom;
};
const IconBox iconBoxes[] = {
#include <icon.inc>
};

} // namespace

QIcon programIcon() {
    QIcon icon;
    for (const int side : {16, 32, 48}) {
        QPixmap picture(side, side);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        for (const IconBox& box : iconBoxes) {
            if (box.side != side)
                continue;
            QLinearGradient fill(box.place.topLeft(), box.place.bottomLeft());
            fill.setStops({{0, box.top}, {1, box.bottom}});
            painter.setRenderHint(QPainter::Antialiasing, box.radius > 0);
            painter.setPen(Qt::NoPen);
            painter.setBrush(box.top == box.bottom ? QBrush(QColor(box.top)) : fill);
            painter.drawRoundedRect(box.place, box.radius, box.radius);
        }
        icon.addPixmap(picture);
    }
    return icon;
}

QPainterPath buildingPath() {
    QPainterPath path;
    path.setFillRule(Qt::OddEvenFill);

    path.moveTo(2.5, 2);
    path.lineTo(15.5, 2);
    turn(path, {18, 2}, {18, 4.5});
    path.lineTo(18, 32);
    path.lineTo(11, 32);
    path.lineTo(11, 27);
    turn(path, {11, 26}, {10, 26});
    path.lineTo(8, 26);
    turn(path, {7, 26}, {7, 27});
    path.lineTo(7, 32);
    path.lineTo(1, 32);
    turn(path, {0, 32}, {0, 31});
    path.lineTo(0, 4.5);
    turn(path, {0, 2}, {2.5, 2});
    path.closeSubpath();

    path.moveTo(20, 14);
    path.lineTo(31.5, 14);
    turn(path, {34, 14}, {34, 16.5});
    path.lineTo(34, 31);
    turn(path, {34, 32}, {33, 32});
    path.lineTo(20, 32);
    path.closeSubpath();

    for (const qreal y : {6.0, 12.0, 18.0}) {
        addPane(path, 4, y, 3);
        addPane(path, 11, y, 3);
    }
    addPane(path, 25, 18, 4);
    addPane(path, 25, 24, 4);
    return path;
}

void drawMagnifier(QPainter& painter, const QPoint& origin, QRgb colour) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(origin);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(colour), 1.6));
    painter.drawEllipse(QPointF(6.75, 6.75), 4.5, 4.5);
    painter.setPen(QPen(QColor(colour), 1.8, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(10.1, 10.1), QPointF(13.9, 13.9));
    painter.restore();
}

void BuildingGlyph::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(width() / 34.0, height() / 34.0);
    painter.fillPath(buildingPath(), QColor(colours::blue));
}

} // namespace look
