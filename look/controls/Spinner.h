#pragma once

#include <QBasicTimer>
#include <QWidget>

namespace look {

// 16 x 16, eight spokes, one step clockwise every 100 ms. Hidden while stopped, so that it takes no
// room in a layout; its timer runs only while it turns. Main thread.
class Spinner : public QWidget {
    Q_OBJECT
public:
    explicit Spinner(QWidget* parent = nullptr);

    bool isTurning() const { return timer_.isActive(); }
    void setTurning(bool turning);

protected:
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    QBasicTimer timer_;
    // The brightest spoke, clockwise from the top.
    int step_ = 0;
};

} // namespace look
