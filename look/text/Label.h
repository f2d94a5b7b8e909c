#pragma once

#include "look/text/LiteralText.h"

#include <QLabel>
#include <QRgb>

#include <optional>

namespace look {

// Plain text in one colour. One line that is elided, or up to N lines that wrap and are elided in
// the last one. Assistive technology always gets the whole text. Texts of any length are cheap:
// only what can be seen is laid out. Main thread.
class Label : public QLabel, public Elidable {
    Q_OBJECT
public:
    // `pixels`: the size of the font.
    Label(int pixels, QRgb colour, QWidget* parent = nullptr);
    Label(int pixels, QFont::Weight weight, QRgb colour, QWidget* parent = nullptr);

    // Hides QLabel's: the text is literal whatever it holds and whoever is the buddy.
    void setText(const QString& text);
    const QString& text() const { return text_.text(); }
    void setBuddy(QWidget* buddy);

    void setColour(QRgb colour);
    // 1 is a single line; more wrap. The height is always that of the lines that are there.
    void setMaximumLines(int lines);
    QString elidedText() const override;

    // Whether what the label tells of is still going on: a state for assistive technology alone.
    bool isBusy() const { return isBusy_; }
    void setBusy(bool busy);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return maximumLines_ > 1; }
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    const TextBlock& block(int width) const;
    Qt::Alignment visualAlignment() const;

    FittedText text_;
    QRgb colour_;
    int maximumLines_ = 1;
    bool isBusy_ = false;
    // Laid out for blockWidth_; nothing after a change.
    mutable std::optional<TextBlock> block_;
    mutable int blockWidth_ = -1;
};

} // namespace look
