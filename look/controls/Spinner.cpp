#include "look/controls/Spinner.h"

#include "look/style/Colours.h"

#include <QPainter>
#include <QTimerEvent>

namespace look {

Spinner::Spinner(QWidget* parent) : QWidget(parent) {
    setFixedSize(16, 16);
    hide();
}

void Spinner::setTurning(bool turning) {
    if (turning == isTurning())
        return;
    if (turning)
        timer_.start(100, this);
    else
        timer_.stop();
    setVisible(turning);
}

void Spinner::paintEvent(QPaintEvent* /*event*/) {
    constexpr int spokes = 8;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(8, 8);
    painter.rotate(45 * step_);
    for (int i = 0; i < spokes; ++i) {
        QColor colour(colours::spinner);
        colour.setAlphaF(1 - 0.8F * float(i) / (spokes - 1));
        painter.setPen(Qt::NoPen);
        painter.setBrush(colour);
        painter.drawRoundedRect(QRectF(-0.9, -7.3, 1.8, 4.6), 0.9, 0.9);
        painter.rotate(-45);
    }
}

void Spinner::timerEvent(QTimerEvent* event) {
    if (event->timerId() == timer_.timerId()) {
        step_ = (step_ + 1) % 8;
        update();
    }
}

} // namespace look
