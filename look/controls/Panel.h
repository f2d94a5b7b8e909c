#pragma once

#include <QDialog>

class QStackedWidget;
class QVBoxLayout;

namespace look {

class Button;
class Label;

enum class PanelKind { Dialog, Alert };

// A sheet: a part of its window, in the middle of the page that it covers. It holds the building, a
// heading, a text, perhaps one control, one or two buttons. The page is out of reach meanwhile and
// shows under black; then it has the keyboard again where it had it. Return presses the prominent
// button; Escape the other one, or the only one. Grows with its texts; a text beyond 24 lines is
// elided and then its tooltip. Use open(), once, and finished() or accepted() for the answer, with
// which the panel deletes itself. Main thread.
class Panel : public QDialog {
    Q_OBJECT

public:
    // Will cover the page that `pages` shows when the panel is opened.
    Panel(PanelKind kind, const QString& heading, const QString& information,
          QStackedWidget* pages);

    PanelKind kind() const { return kind_; }

    // Below the text, 300 x 28. The panel takes the control over, which has the keyboard first.
    void setAccessory(QWidget* accessory);

    // To be called once. Without a second title there is one button as wide as the panel's text.
    void setButtons(const QString& prominentTitle, const QString& otherTitle = {});

    Label* heading() const { return heading_; }
    // For tests, as are the buttons.
    Label* information() const { return information_; }
    Button* prominentButton() const { return prominentButton_; }
    // Null if there is one button only.
    Button* otherButton() const { return otherButton_; }

    void open() override;
    void done(int result) override;
    void reject() override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    PanelKind kind_;
    QStackedWidget* pages_;
    QWidget* covered_ = nullptr; // while open
    Label* heading_;
    Label* information_;
    QVBoxLayout* column_;
    QWidget* accessory_ = nullptr;
    Button* prominentButton_ = nullptr;
    Button* otherButton_ = nullptr;
};

} // namespace look
