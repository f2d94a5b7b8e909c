#include "look/text/Label.h"

#include "look/style/Sizes.h"
#include "look/text/Fonts.h"

#include <QAccessible>
#include <QPainter>
#include <QStyle>

namespace look {

Label::Label(int pixels, QRgb colour, QWidget* parent)
    : Label(pixels, QFont::Normal, colour, parent) {}

Label::Label(int pixels, QFont::Weight weight, QRgb colour, QWidget* parent)
    : QLabel(parent), colour_(colour) {
    setTextFormat(Qt::PlainText);
    setFont(look::font(pixels, weight));
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void Label::setText(const QString& text) {
    text_.setText(text);
    block_.reset();
    QLabel::setText(buddy() ? literal(text) : text);
    // The label compares escaped texts and sizes; ours may differ although its own do not.
    updateGeometry();
    update();
}

void Label::setBuddy(QWidget* buddy) {
    QLabel::setBuddy(buddy);
    setText(QString(text()));
}

void Label::setColour(QRgb colour) {
    if (colour_ != colour) {
        colour_ = colour;
        update();
    }
}

void Label::setBusy(bool busy) {
    if (isBusy_ == busy)
        return;
    isBusy_ = busy;
    QAccessible::State changed;
    changed.busy = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
}

void Label::setMaximumLines(int lines) {
    maximumLines_ = lines;
    block_.reset();
    QSizePolicy policy = sizePolicy();
    policy.setHeightForWidth(lines > 1);
    policy.setVerticalPolicy(lines > 1 ? QSizePolicy::Preferred : QSizePolicy::Fixed);
    setSizePolicy(policy);
    updateGeometry();
    update();
}

QString Label::elidedText() const {
    const int width = contentsRect().width();
    const bool isElided =
        maximumLines_ > 1 ? block(width).isElided() : text_.within(width, font()).isElided;
    return isElided ? text() : QString();
}

// What is wrapped grows with heightForWidth() alone.
QSize Label::sizeHint() const {
    return {text_.naturalWidth(font()), lineHeight(font().pixelSize())};
}

// A text may always be squeezed: it is elided then.
QSize Label::minimumSizeHint() const {
    return {0, lineHeight(font().pixelSize())};
}

int Label::heightForWidth(int width) const {
    if (maximumLines_ == 1)
        return -1;
    return qMax(block(width).height(), lineHeight(font().pixelSize()));
}

void Label::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    const QRect area = contentsRect();
    if (maximumLines_ > 1) {
        block(area.width()).draw(painter, area.topLeft(), colour_);
        return;
    }
    drawLine(painter, area, text_.within(area.width(), font()), font(), colour_, visualAlignment(),
             layoutDirection());
}

bool Label::event(QEvent* event) {
    if (event->type() == QEvent::FontChange || event->type() == QEvent::LayoutDirectionChange) {
        text_.forget();
        block_.reset();
    }
    return QLabel::event(event);
}

const TextBlock& Label::block(int width) const {
    if (!block_ || blockWidth_ != width) {
        block_.emplace(text(), font(), width, maximumLines_, layoutDirection(),
                       visualAlignment() | Qt::AlignAbsolute);
        blockWidth_ = width;
    }
    return *block_;
}

Qt::Alignment Label::visualAlignment() const {
    return QStyle::visualAlignment(layoutDirection(), alignment()) & Qt::AlignHorizontal_Mask &
           ~Qt::AlignAbsolute;
}

} // namespace look
