#pragma once

#include "look/text/LiteralText.h"

#include <QComboBox>
#include <QWheelEvent>

namespace look {

// A pop-up: one current entry and a menu to choose another. Its width is fixed; an entry that
// outgrows it is elided. Assistive technology names it by its buddy label. Main thread.
class PopUp : public QComboBox, public Elidable {
    Q_OBJECT
public:
    explicit PopUp(int width, QWidget* parent = nullptr);

    // The toolkit's would measure every entry.
    QSize sizeHint() const override { return minimumSize(); }
    QSize minimumSizeHint() const override { return minimumSize(); }
    QString elidedText() const override;
    // The part of the control that the current entry may take.
    QRect textRectangle() const;
    void hidePopup() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    // Scrolling over the window must not change a setting.
    void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

} // namespace look
