#pragma once

#include <QComboBox>

namespace look {

// A pop-up: one current entry and a menu to choose another. Its width is fixed; an entry that
// outgrows it is elided and becomes the tooltip, unless another tooltip was set. Assistive
// technology names it by its buddy label.
class PopUp : public QComboBox {
    Q_OBJECT

public:
    explicit PopUp(int width, QWidget* parent = nullptr);

    bool isElided() const;
    // The part of the control that the current entry may take.
    QRect textRectangle() const;

protected:
    bool event(QEvent* event) override;
    // Scrolling over the window must not change a setting.
    void wheelEvent(QWheelEvent* event) override;
};

} // namespace look
