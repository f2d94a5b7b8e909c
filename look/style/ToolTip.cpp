#include "look/style/ToolTip.h"

#include "look/style/Colours.h"
#include "look/style/Shapes.h"
#include "look/style/Sizes.h"
#include "look/text/Fonts.h"
#include "look/text/LiteralText.h"

#include <QApplication>
#include <QHelpEvent>
#include <QPainter>
#include <QPointer>
#include <QScreen>
#include <QTimer>
#include <QWidget>

namespace look {
namespace {

constexpr int textWidth = 360 - 2 * 8 - 2;
constexpr int textPixels = 12;
constexpr QMargins padding(1 + 8, 1 + 5, 1 + 8, 1 + 5);

// The window of one tooltip. Deletes itself when it is hidden. Watches the application for what
// makes a tooltip go.
class ToolTip : public QWidget {
public:
    ToolTip(const QString& text, QWidget* owner, const QSize& room)
        : QWidget(owner, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowTransparentForInput),
          block_(text, look::font(textPixels), qMin(textWidth, room.width()),
                 qBound(1, room.height() / lineHeight(textPixels), sizes::mostLines),
                 owner->layoutDirection(),
                 owner->layoutDirection() == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft) {
        setAttribute(Qt::WA_TranslucentBackground);
        setAttribute(Qt::WA_ShowWithoutActivating);
        setAttribute(Qt::WA_DeleteOnClose);
        setAccessibleName(text);
        resize(QSize(block_.naturalWidth(), block_.height()).grownBy(padding));
        if (needsWindowShape())
            setMask(roundedRegion(rect(), sizes::toolTipRadius));
        qApp->installEventFilter(this);
        const auto letters = qMin<qsizetype>(text.size(), 1000);
        QTimer::singleShot(10000 + 40 * int(letters), this, &QWidget::close);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        drawBordered(painter, rect(), sizes::toolTipRadius, colours::toolTip,
                     colours::toolTipOutline);
        // Aligned right, the block lies at the far end of the width that it was laid out for.
        block_.draw(painter, QPoint(padding.left() - block_.leftmost(), padding.top()),
                    colours::label);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        switch (event->type()) {
        case QEvent::Leave:
            if (watched == parent())
                close();
            break;
        case QEvent::WindowDeactivate:
        case QEvent::WindowActivate:
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::KeyPress:
        case QEvent::Wheel:
        case QEvent::FocusIn:
        case QEvent::FocusOut:
            close();
            break;
        default:
            break;
        }
        return false;
    }

private:
    TextBlock block_;
};

QPointer<ToolTip> current; // the one that is shown

// The toolkit would look for markup in a widget's tooltip.
class PlainToolTips : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::ToolTip || !watched->isWidgetType())
            return false;
        auto* widget = static_cast<QWidget*>(watched);
        QString text = widget->toolTip();
        if (const auto* elidable = dynamic_cast<const Elidable*>(watched);
            elidable && text.isEmpty())
            text = elidable->elidedText();
        if (text.isEmpty())
            return false;
        showToolTip(static_cast<QHelpEvent*>(event)->globalPos(), text, widget);
        event->accept();
        return true;
    }
};

} // namespace

void keepToolTipsPlain(QApplication& application) {
    application.installEventFilter(new PlainToolTips(&application));
}

void showToolTip(const QPoint& position, const QString& text, QWidget* owner) {
    hideToolTip();
    if (text.isEmpty() || !owner)
        return;
    const QScreen* screen = QGuiApplication::screenAt(position);
    if (!screen)
        screen = owner->screen();
    const QRect room = screen->availableGeometry();
    auto* tip = new ToolTip(text, owner, room.size().shrunkBy(padding));

    // Below the pointer; above it where there is no room left.
    constexpr QPoint offset(2, 16);
    QRect place(position + offset, tip->size());
    if (owner->layoutDirection() == Qt::RightToLeft)
        place.moveRight(position.x() - offset.x());
    if (place.bottom() > room.bottom())
        place.moveBottom(position.y() - 4);
    place.moveLeft(qBound(room.left(), place.left(), room.right() - place.width() + 1));
    place.moveTop(qMax(room.top(), place.top()));
    tip->move(place.topLeft());
    current = tip;
    tip->show();
}

void hideToolTip() {
    if (ToolTip* tip = current) {
        current.clear();
        tip->close();
    }
}

QWidget* shownToolTip() {
    return current;
}

} // namespace look
