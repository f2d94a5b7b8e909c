#pragma once

#include <QBasicTimer>
#include <QWidget>

#include <chrono>

namespace look {

// A time span as a clock that was started shows it: "2:31", from an hour on "1:02:31". Any thread.
QString clockText(std::chrono::seconds span);

// 16 x 16, eight spokes, one step clockwise every 100 ms. Hidden while stopped, so that it takes no
// room in a layout; its timer runs only while it turns. Its tooltip says for how long it has
// turned, as of the moment it is shown. Main thread.
class Spinner : public QWidget {
    Q_OBJECT
public:
    explicit Spinner(QWidget* parent = nullptr);

    bool isTurning() const { return timer_.isActive(); }
    void setTurning(bool turning);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    QBasicTimer timer_;
    std::chrono::steady_clock::time_point begin_; // of the last turning
    // The brightest spoke, clockwise from the top.
    int step_ = 0;
};

} // namespace look
