#pragma once

#include "look/text/LiteralText.h"

#include <QPushButton>

namespace look {

enum class ButtonKind { Push, Prominent, Small };
enum class ButtonGlyph { None, Magnifier };

// A push button whose title is literal text. Grows with its title unless a width is fixed; then the
// title is elided, and what is its tooltip is the accessible description too. Main thread.
class Button final : public QPushButton, public Elidable {
    Q_OBJECT
public:
    explicit Button(ButtonKind kind, const QString& title = {}, QWidget* parent = nullptr);

    ButtonKind kind() const { return kind_; }
    ButtonGlyph glyph() const { return glyph_; }
    // The glyph stands before the title; right to left it stands on its right.
    void setGlyph(ButtonGlyph glyph);

    // The title as given; text() has its "&" doubled.
    const QString& title() const { return title_.text(); }
    void setTitle(const QString& title);
    // The title as it is shown.
    const Line& shownTitle() const;
    QString elidedText() const override;

    int cornerRadius() const;
    // The space between either edge and the title.
    int sidePadding() const;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool event(QEvent* event) override;

private:
    int titleRoom() const;
    void describe();

    ButtonKind kind_;
    ButtonGlyph glyph_ = ButtonGlyph::None;
    FittedText title_;
};

} // namespace look
