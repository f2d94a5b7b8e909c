#include "look/controls/Field.h"

#include "look/accessibility/Accessibility.h"
#include "look/style/Colours.h"
#include "look/style/Sizes.h"
#include "look/text/Fonts.h"

#include <QFocusEvent>
#include <QGuiApplication>
#include <QPainter>
#include <QStyleHints>
#include <QTimerEvent>

namespace look {

Field::Field(FieldKind kind, QWidget* parent) : QLineEdit(parent), kind_(kind) {
    setFont(look::font(kind == FieldKind::Search ? 15 : 11));
    setFixedHeight(kind == FieldKind::Search    ? 34
                   : kind == FieldKind::Service ? sizes::smallControl
                                                : 26);
    alignToLeadingEdge();
    connect(this, &QLineEdit::selectionChanged, this, &Field::takeColours);
    connect(this, &QLineEdit::cursorPositionChanged, this, &Field::showCursor);
    connect(this, &QLineEdit::textEdited, this, &Field::showCursor);
    connect(this, &QLineEdit::textChanged, this, &Field::showExample);
}

int Field::cornerRadius() const {
    return kind_ == FieldKind::Search ? sizes::radius : sizes::smallRadius;
}

void Field::paintEvent(QPaintEvent* event) {
    QLineEdit::paintEvent(event);
    if (!isCursorShown_ || isReadOnly() || !hasFocus() || hasSelectedText())
        return;
    // The toolkit's rectangle is five pixels wider than its cursor on the left.
    const QRect around = cursorRect();
    QPainter painter(this);
    painter.fillRect(QRect(around.left() + 5, around.top(), 1, around.height()),
                     QColor(colours::textCursor));
}

void Field::focusInEvent(QFocusEvent* event) {
    // Tab selects all of it before the focus is told of, with which it is read out as selected:
    // Orca 43 would have read it before, too.
    const Unreported selection(this, QAccessible::TextSelectionChanged);
    QLineEdit::focusInEvent(event);
    showCursor();
}

void Field::focusOutEvent(QFocusEvent* event) {
    // What is selected is what the menus act on: on the way into their bar it is kept.
    const bool isForMenus = event->reason() == Qt::MenuBarFocusReason;
    QFocusEvent leaving(event->type(), isForMenus ? Qt::PopupFocusReason : event->reason());
    QLineEdit::focusOutEvent(&leaving);
    blink_.stop();
    isCursorShown_ = false;
    update();
}

void Field::timerEvent(QTimerEvent* event) {
    if (event->timerId() != blink_.timerId()) {
        QLineEdit::timerEvent(event);
        return;
    }
    isCursorShown_ = !isCursorShown_;
    update(cursorRect());
}

bool Field::event(QEvent* event) {
    const bool isHandled = QLineEdit::event(event);
    if (event->type() == QEvent::LayoutDirectionChange)
        alignToLeadingEdge();
    if (event->type() == QEvent::ReadOnlyChange) {
        takeColours();
        showExample();
    }
    return isHandled;
}

// After every key the cursor is visible for a whole half period, so that it never seems lost.
void Field::showCursor() {
    if (!hasFocus())
        return;
    isCursorShown_ = true;
    const int period = QGuiApplication::styleHints()->cursorFlashTime();
    if (period > 0)
        blink_.start(period / 2, this);
    update();
}

void Field::alignToLeadingEdge() {
    setAlignment((layoutDirection() == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft) |
                 Qt::AlignAbsolute | Qt::AlignVCenter);
}

void Field::setExample(const QString& text) {
    example_ = text;
    showExample();
}

// The toolkit describes a field by its placeholder whatever is in it.
void Field::showExample() {
    setPlaceholderText(text().isEmpty() && !isReadOnly() ? example_ : QString());
}

void Field::takeColours() {
    QPalette changed = palette();
    const QColor text(isReadOnly() ? colours::secondary : colours::labelOnWell);
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive})
        changed.setColor(group, QPalette::Text, text);
    // As a list's row; not before, or the field would be drawn twice at every start.
    if (hasSelectedText()) {
        changed.setColor(QPalette::Inactive, QPalette::Highlight, colours::selectionUnfocused);
        changed.setColor(QPalette::Inactive, QPalette::HighlightedText, colours::label);
    }
    setPalette(changed);
}

} // namespace look
