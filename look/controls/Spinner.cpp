#include "look/controls/Spinner.h"

#include "look/style/Colours.h"
#include "look/style/ToolTip.h"

#include <QHelpEvent>
#include <QPainter>

namespace look {

QString clockText(std::chrono::seconds span) {
    const int minutes = int(span.count() / 60);
    const int seconds = int(span.count() % 60);
    return minutes < 60 ? QString::asprintf("%d:%02d", minutes, seconds)
                        : QString::asprintf("%d:%02d:%02d", minutes / 60, minutes % 60, seconds);
}

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
    begin_ = std::chrono::steady_clock::now();
    setVisible(turning);
}

bool Spinner::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto turned = std::chrono::steady_clock::now() - begin_;
    showToolTip(static_cast<QHelpEvent*>(event)->globalPos(),
                clockText(std::chrono::floor<std::chrono::seconds>(turned)), this);
    return true;
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
