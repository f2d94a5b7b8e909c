#include "look/style/FocusRing.h"

#include "look/controls/Field.h"
#include "look/controls/Segments.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFocusEvent>
#include <QFocusFrame>
#include <QPointer>
#include <QPushButton>

namespace look {
namespace {

// What the ring goes around while this has the focus; null where there is none.
QWidget* ringedBy(QWidget* focus, bool isFromKeyboard) {
    if (qobject_cast<Field*>(focus))
        return focus;
    if (const auto* list = qobject_cast<QAbstractItemView*>(focus)) {
        const QItemSelectionModel* selection = list->selectionModel();
        return selection && selection->hasSelection() ? nullptr : focus;
    }
    if (!isFromKeyboard)
        return nullptr;
    if (qobject_cast<Segments*>(focus->parentWidget()))
        return focus->parentWidget();
    const bool isRinged = qobject_cast<QCheckBox*>(focus) || qobject_cast<QPushButton*>(focus) ||
                          qobject_cast<QComboBox*>(focus);
    return isRinged ? focus : nullptr;
}

// Follows the focus through the whole application: one ring is enough, since one widget has it.
class RingKeeper : public QObject {
public:
    explicit RingKeeper(QApplication& application) : QObject(&application) {
        application.installEventFilter(this);
        connect(&application, &QApplication::focusChanged, this, [this] { refresh(); });
    }

    void refresh() {
        QWidget* focus = QApplication::focusWidget();
        if (focus && focus->window()->windowType() == Qt::Popup)
            return; // an open menu belongs to the control that wears the ring
        QWidget* control = focus ? ringedBy(focus, isFromKeyboard_) : nullptr;
        if (control && !frame_)
            frame_ = new QFocusFrame(control->window());
        if (frame_)
            frame_->setWidget(control);
    }

    QWidget* control() const { return frame_ ? frame_->widget() : nullptr; }

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        const QEvent::Type type = event->type();
        if (type == QEvent::KeyPress || type == QEvent::MouseButtonPress)
            isKeyLast_ = type == QEvent::KeyPress;
        else if (type == QEvent::FocusIn)
            noteReason(static_cast<QFocusEvent*>(event)->reason());
        return false;
    }

private:
    // A button that gets disabled under the mouse passes the focus on "by Tab": what counts is
    // whether the person used the keyboard.
    void noteReason(Qt::FocusReason reason) {
        if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
            reason == Qt::ShortcutFocusReason)
            isFromKeyboard_ = isKeyLast_;
        else if (reason == Qt::MouseFocusReason)
            isFromKeyboard_ = false;
    }

    QPointer<QFocusFrame> frame_; // a child of the window it lies in
    bool isKeyLast_ = false;
    bool isFromKeyboard_ = false;
};

QPointer<RingKeeper> keeper;

} // namespace

void keepFocusRing(QApplication& application) {
    if (!keeper)
        keeper = new RingKeeper(application);
}

void refreshFocusRing() {
    if (keeper)
        keeper->refresh();
}

QWidget* ringedControl() {
    return keeper ? keeper->control() : nullptr;
}

} // namespace look
