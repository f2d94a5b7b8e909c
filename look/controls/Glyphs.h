#pragma once

#include <QIcon>
#include <QPainterPath>
#include <QWidget>

class QPainter;

namespace look {

// The program's icon, painted as the installed one is: nothing is read, and nothing needs to be
// installed. Main thread.
QIcon programIcon();

// The building in a box of 34 x 34. Any thread.
QPainterPath buildingPath();

// The magnifier in a box of 16 x 16 at `origin`, in the colour of the text beside it. Any
// thread, each painter on its own.
void drawMagnifier(QPainter& painter, const QPoint& origin, QRgb colour);

// The blue building that stands for the program. Never mirrored. Its accessible name is the
// caller's to give. Main thread.
class BuildingGlyph : public QWidget {
    Q_OBJECT
public:
    // `side`: width and height in pixels, 34 in the window and 44 in a dialog.
    explicit BuildingGlyph(int side, QWidget* parent = nullptr) : QWidget(parent) {
        setFixedSize(side, side);
    }

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace look
