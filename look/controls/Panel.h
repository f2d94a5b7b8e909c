#pragma once

#include <QDialog>

class QVBoxLayout;

namespace look {

class Button;
class Label;

enum class PanelKind { Dialog, Alert };

// A panel over its window: the building, a heading, a text, perhaps one control, one or two
// buttons. Window-modal and without a frame. Return presses the prominent button; Escape the other
// one, or the only one. Grows with its texts; a text beyond 24 lines is elided and then its
// tooltip. Use open(), and finished() or accepted() for the answer. Main thread.
class Panel : public QDialog {
    Q_OBJECT

public:
    Panel(PanelKind kind, const QString& heading, const QString& information,
          QWidget* parent = nullptr);

    PanelKind kind() const { return kind_; }

    // Below the text, 300 x 28. The panel takes the control over.
    void setAccessory(QWidget* accessory);

    // To be called once. Without a second title there is one button as wide as the panel's text.
    void setButtons(const QString& prominentTitle, const QString& otherTitle = {});

    Label* heading() const { return heading_; }
    // For tests, as are the buttons.
    Label* information() const { return information_; }
    Button* prominentButton() const { return prominentButton_; }
    // Null if there is one button only.
    Button* otherButton() const { return otherButton_; }

    void reject() override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void fitHeight();

    PanelKind kind_;
    Label* heading_;
    Label* information_;
    QVBoxLayout* column_;
    Button* prominentButton_ = nullptr;
    Button* otherButton_ = nullptr;
};

} // namespace look
