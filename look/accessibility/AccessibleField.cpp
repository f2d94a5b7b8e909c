#include "look/accessibility/AccessibleField.h"

#include "look/controls/Field.h"

#include <QAccessibleWidget>
#include <QTextLayout>

#include <algorithm>

namespace look {
namespace {

class AccessibleField : public QAccessibleWidget,
                        public QAccessibleTextInterface,
                        public QAccessibleEditableTextInterface {
public:
    explicit AccessibleField(Field* field) : QAccessibleWidget(field, QAccessible::EditableText) {}

    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Value)
            return field()->text();
        const QString known = QAccessibleWidget::text(kind);
        const bool isExample = kind == QAccessible::Description && known.isEmpty();
        return isExample ? field()->placeholderText() : known;
    }
    void setText(QAccessible::Text kind, const QString& text) override {
        kind == QAccessible::Value ? write(text) : QAccessibleWidget::setText(kind, text);
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.editable = !field()->isReadOnly();
        state.readOnly = field()->isReadOnly();
        state.selectableText = true;
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::TextInterface)
            return static_cast<QAccessibleTextInterface*>(this);
        if (type == QAccessible::EditableTextInterface)
            return static_cast<QAccessibleEditableTextInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    int selectionCount() const override { return field()->hasSelectedText() ? 1 : 0; }
    void selection(int number, int* begin, int* end) const override {
        const bool isThere = number == 0 && field()->hasSelectedText();
        *begin = isThere ? field()->selectionStart() : 0;
        *end = isThere ? field()->selectionEnd() : 0;
    }
    void addSelection(int begin, int end) override { setSelection(0, begin, end); }
    void removeSelection(int number) override {
        if (number == 0)
            field()->deselect();
    }
    void setSelection(int number, int begin, int end) override {
        if (number == 0)
            field()->setSelection(begin, end - begin);
    }

    int cursorPosition() const override { return field()->cursorPosition(); }
    void setCursorPosition(int position) override { field()->setCursorPosition(position); }
    QString text(int begin, int end) const override {
        return begin > end ? QString() : field()->text().mid(begin, end - begin);
    }
    int characterCount() const override { return int(field()->text().size()); }

    // As far from the cursor as it is in the line.
    QRect characterRect(int offset) const override {
        QTextLayout layout(field()->text(), field()->font());
        layout.beginLayout();
        const QTextLine line = layout.createLine();
        layout.endLayout();
        if (!line.isValid() || offset < 0 || offset >= characterCount())
            return {};
        const auto [left, right] =
            std::minmax({line.cursorToX(offset), line.cursorToX(offset + 1)});
        const QRect cursor = field()->inputMethodQuery(Qt::ImCursorRectangle).toRect();
        const QPointF middle = QRectF(cursor).center();
        const qreal x = middle.x() + left - line.cursorToX(cursorPosition());
        const QPoint corner(qRound(x), cursor.top());
        return {field()->mapToGlobal(corner), QSize(qRound(right - left), cursor.height())};
    }
    int offsetAtPoint(const QPoint& point) const override {
        const QPoint inField = field()->mapFromGlobal(point);
        return field()->rect().contains(inField) ? field()->cursorPositionAt(inField) : -1;
    }
    void scrollToSubstring(int begin, int end) override {
        field()->setCursorPosition(end);
        field()->setCursorPosition(begin);
    }
    // One format from the first letter to the last one, and it has no name.
    QString attributes(int /*offset*/, int* begin, int* end) const override {
        *begin = 0;
        *end = characterCount();
        return {};
    }

    void deleteText(int begin, int end) override { replaceText(begin, end, {}); }
    void insertText(int offset, const QString& text) override { replaceText(offset, offset, text); }
    void replaceText(int begin, int end, const QString& text) override {
        if (begin >= 0 && end >= begin)
            write(field()->text().replace(begin, end - begin, text));
    }

private:
    Field* field() const { return static_cast<Field*>(object()); }

    void write(const QString& text) {
        if (field()->isEnabled() && !field()->isReadOnly())
            field()->setText(text);
    }
};

} // namespace

QAccessibleInterface* accessibleOf(Field* field) {
    return new AccessibleField(field);
}

} // namespace look
