#pragma once

#include <QBasicTimer>
#include <QLineEdit>

namespace look {

enum class FieldKind {
    Search,  // 34 high, text of 15
    Service, // 24 high, text of 11
    Routing  // 26 high, text of 11
};

// A text field. A text keeps the order of its own first strong letter and lies at the leading edge
// of the window. Draws its own blue text cursor. Main thread.
class Field : public QLineEdit {
    Q_OBJECT
public:
    explicit Field(FieldKind kind, QWidget* parent = nullptr);

    int cornerRadius() const;
    // What to type. Shown, and told as the description, only while the field is empty and takes it.
    void setExample(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    bool event(QEvent* event) override;

private:
    void showCursor();
    void alignToLeadingEdge();
    void takeColours();
    void showExample();

    FieldKind kind_;
    QString example_;
    // Runs while the field has the focus of an active window, unless the desktop forbids blinking.
    QBasicTimer blink_;
    bool isCursorShown_ = false;
};

} // namespace look
