#include "look/style/FocusRing.h"

#include "look/controls/Field.h"
#include "look/controls/Segments.h"
#include "look/style/Colours.h"
#include "look/style/Shapes.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFocusEvent>
#include <QPainter>
#include <QPointer>
#include <QPushButton>

namespace look {

namespace {

constexpr int ringWidth = 3;

// What the ring goes around; no control means that there is none.
struct RingShape {
    QWidget* control = nullptr;
    QRect rectangle; // in the control's coordinates
    qreal radius = 0;
};

RingShape shapeFor(QWidget* focus, bool isFromKeyboard) {
    if (auto* field = qobject_cast<Field*>(focus))
        return {field, field->rect(), qreal(field->cornerRadius())};
    if (auto* list = qobject_cast<QAbstractItemView*>(focus)) {
        const QItemSelectionModel* selection = list->selectionModel();
        return selection && selection->hasSelection() ? RingShape{}
                                                      : RingShape{list, list->rect(), 7};
    }
    if (!isFromKeyboard)
        return {};
    if (auto* segments = qobject_cast<Segments*>(focus->parentWidget()))
        return {segments, segments->rect(), qreal(segments->cornerRadius())};
    if (auto* checkBox = qobject_cast<QCheckBox*>(focus)) {
        const QRect row = checkBox->rect();
        const QRect box(row.left(), row.top() + (row.height() - 14) / 2, 14, 14);
        return {checkBox, QStyle::visualRect(checkBox->layoutDirection(), row, box), 3.5};
    }
    if (qobject_cast<QPushButton*>(focus) || qobject_cast<QComboBox*>(focus))
        return {focus, focus->rect(), focus->height() <= 24 ? 6.0 : 7.0};
    return {};
}

class Ring : public QWidget {
public:
    explicit Ring(QWidget* window) : QWidget(window) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setFocusPolicy(Qt::NoFocus);
    }

    void put(const RingShape& shape) {
        QWidget* window = shape.control->window();
        if (parentWidget() != window)
            setParent(window);
        radius_ = shape.radius;
        const QRect around(shape.control->mapTo(window, shape.rectangle.topLeft()),
                           shape.rectangle.size());
        setGeometry(around.adjusted(-ringWidth, -ringWidth, ringWidth, ringWidth));
        raise();
        show();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        drawBand(painter, rect().adjusted(ringWidth, ringWidth, -ringWidth, -ringWidth), radius_,
                 ringWidth, colours::focusRing);
    }

private:
    qreal radius_ = 0;
};

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
        const RingShape shape =
            focus && focus->isActiveWindow() ? shapeFor(focus, isFromKeyboard_) : RingShape{};
        if (!shape.control || !shape.control->isVisible() || !shape.control->isEnabled()) {
            control_.clear();
            if (ring_)
                ring_->hide();
            return;
        }
        control_ = shape.control;
        if (!ring_)
            ring_ = new Ring(shape.control->window());
        ring_->put(shape);
    }

    QWidget* control() const { return control_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        switch (event->type()) {
        case QEvent::KeyPress:
            isKeyLast_ = true;
            break;
        case QEvent::MouseButtonPress:
            isKeyLast_ = false;
            break;
        case QEvent::FocusIn:
            noteReason(static_cast<QFocusEvent*>(event)->reason());
            break;
        case QEvent::Move:
        case QEvent::Resize:
        case QEvent::Hide:
        case QEvent::EnabledChange:
            if (concernsControl(watched))
                refresh();
            break;
        case QEvent::Show:
        case QEvent::ActivationChange:
            if (watched == QApplication::focusWidget())
                refresh();
            break;
        default:
            break;
        }
        return false;
    }

private:
    // A button that gets disabled under the mouse passes the focus on "by Tab": what counts is
    // whether the person used the keyboard.
    void noteReason(Qt::FocusReason reason) {
        switch (reason) {
        case Qt::TabFocusReason:
        case Qt::BacktabFocusReason:
        case Qt::ShortcutFocusReason:
            isFromKeyboard_ = isKeyLast_;
            break;
        case Qt::MouseFocusReason:
            isFromKeyboard_ = false;
            break;
        default:
            break;
        }
    }

    bool concernsControl(const QObject* watched) const {
        if (!control_ || !watched->isWidgetType())
            return false;
        const auto* widget = static_cast<const QWidget*>(watched);
        return widget == control_ || widget->isAncestorOf(control_);
    }

    QPointer<Ring> ring_; // a child of the window it lies in
    QPointer<QWidget> control_;
    bool isKeyLast_ = false;
    bool isFromKeyboard_ = false;
};

QPointer<RingKeeper>& keeper() {
    static QPointer<RingKeeper> kept;
    return kept;
}

} // namespace

void keepFocusRing(QApplication& application) {
    if (!keeper())
        keeper() = new RingKeeper(application);
}

void refreshFocusRing() {
    if (keeper())
        keeper()->refresh();
}

QWidget* ringedControl() {
    return keeper() ? keeper()->control() : nullptr;
}

} // namespace look
