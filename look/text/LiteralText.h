#pragma once

#include <QFont>
#include <QRgb>
#include <QString>
#include <QTextLayout>

#include <optional>

class QAbstractButton;
class QPainter;

// Texts as they were given. What a geocoder or a log says may hold "<b>", "&" or a hundred
// kilobytes: nothing here reads markup or mnemonics, and nothing shapes more characters than can be
// seen. Main thread, but for literal(), which any thread may call.
namespace look {

// "&" doubled: what menus, buttons and labels with a buddy show as a single one.
QString literal(const QString& text);
void setLiteralText(QAbstractButton* button, const QString& text);

// One line as it can be drawn. `width` is what it takes, in pixels.
struct Line {
    QString text;
    qreal width = 0;
    bool isElided = false;
};

// The text on one line of at most `width` pixels, elided at its tail; control characters and line
// breaks are spaces.
Line fitLine(const QString& text, const QFont& font, int width);

// A text that is asked again and again how wide it is and what of it fits: measured once, elided
// once per width. Forgets what it knows when it is told of another font.
class FittedText {
public:
    void setText(const QString& text);
    const QString& text() const { return text_; }
    void forget();

    // In whole pixels: a box of this width elides nothing. No more than any screen has.
    int naturalWidth(const QFont& font) const;
    const Line& within(int width, const QFont& font) const;

private:
    const Line& whole(const QFont& font) const;

    QString text_;
    mutable std::optional<Line> whole_; // nothing where it has not been measured
    mutable Line fitted_;
    mutable int fittedWidth_ = -1; // fitted_ is for this width
};

// A control that elides its text where it does not fit. The whole text is then its tooltip, unless
// it has another one. Main thread.
class Elidable {
public:
    // The whole text if not all of it is shown, else empty.
    virtual QString elidedText() const = 0;
    bool isElided() const { return !elidedText().isEmpty(); }

protected:
    ~Elidable() = default;
};

// Draws one line centred vertically in the box, its baseline on a whole pixel. Nothing is cut.
// `alignment` is a visual one: left, right or horizontally centred.
void drawLine(QPainter& painter, const QRect& box, const Line& line, const QFont& font, QRgb colour,
              Qt::Alignment alignment, Qt::LayoutDirection direction);

// A text wrapped to a width and laid out once. Line breaks are kept. At most `maximumLines` lines;
// the last one ends in an ellipsis if anything is left.
class TextBlock {
public:
    TextBlock(const QString& text, const QFont& font, int width, int maximumLines,
              Qt::LayoutDirection direction, Qt::Alignment alignment);

    int height() const { return layout_.lineCount() * lineHeight_; }
    // The longest line in pixels.
    int naturalWidth() const;
    // Where the longest line starts within the width.
    int leftmost() const;
    bool isElided() const { return isElided_; }
    void draw(QPainter& painter, const QPoint& topLeft, QRgb colour) const;

private:
    void lay(const QString& text);

    QTextLayout layout_;
    int width_;
    int maximumLines_;
    int lineHeight_;
    bool isElided_ = false;
};

} // namespace look
