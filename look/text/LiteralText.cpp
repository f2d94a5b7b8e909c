#include "look/text/LiteralText.h"

#include "look/style/Shapes.h"
#include "look/style/Sizes.h"
#include "look/text/Fonts.h"

#include <QAbstractButton>
#include <QFontMetrics>
#include <QPainter>

#include <cmath>

using namespace Qt::StringLiterals;

namespace look {
namespace {

// At these sizes no letter is narrower than two pixels, and marks without a width of their own are
// rare: so many code units fill a line.
qsizetype lettersFilling(int width) {
    return qMax(width, 0) / 2 + 32;
}

// No wrapped text is laid out beyond this: 24 lines of ordinary text in a tooltip. A run of letters
// that stand on top of each other costs the square of its length.
constexpr qsizetype mostWrapped = 1600;

QString firstLetters(const QString& text, qsizetype count) {
    if (count >= text.size())
        return text;
    return text.left(text.at(count - 1).isHighSurrogate() ? count - 1 : count);
}

bool isControl(QChar letter) {
    const QChar::Category category = letter.category();
    return category == QChar::Other_Control || category == QChar::Separator_Line ||
           category == QChar::Separator_Paragraph;
}

QString withoutControls(QString text) {
    for (QChar& letter : text)
        if (isControl(letter))
            letter = u' ';
    return text;
}

// Line breaks as the layout understands them, every other control character a space.
QString withLineSeparators(QString text) {
    text.replace("\r\n"_L1, "\n"_L1);
    text.replace(u'\n', QChar::LineSeparator).replace(u'\r', QChar::LineSeparator);
    text.replace(QChar::ParagraphSeparator, QChar::LineSeparator);
    for (QChar& letter : text)
        if (letter != QChar::LineSeparator && isControl(letter))
            letter = u' ';
    return text;
}

// Where the first baseline lies below the top of a box of this height.
int baseline(const QFontMetrics& metrics, int height) {
    return int(std::floor((height - metrics.height()) / 2.0)) + metrics.ascent();
}

} // namespace

QString literal(const QString& text) {
    QString escaped = text;
    return escaped.replace(u'&', "&&"_L1);
}

void setLiteralText(QAbstractButton* button, const QString& text) {
    button->setText(literal(text));
}

Line fitLine(const QString& text, const QFont& font, int width) {
    QString shown = withoutControls(firstLetters(text, lettersFilling(width)));
    const bool isCut = shown.size() < text.size();
    if (isCut)
        shown += u'\u2026';
    const QFontMetricsF metrics(font);
    Line line{shown, metrics.horizontalAdvance(shown), isCut};
    // The toolkit leaves room for the ellipsis of the first font. Behind letters of another one it
    // can be wider: the line is then cut once more.
    for (qreal room = qMax(width, 0); line.width > width && room >= 0;) {
        line.text = metrics.elidedText(shown, Qt::ElideRight, room);
        line.width = metrics.horizontalAdvance(line.text);
        line.isElided = true;
        room -= std::ceil(line.width - width);
    }
    return line;
}

void FittedText::setText(const QString& text) {
    text_ = text;
    forget();
}

void FittedText::forget() {
    whole_.reset();
    fittedWidth_ = -1;
}

int FittedText::naturalWidth(const QFont& font) const {
    return int(std::ceil(whole(font).width));
}

const Line& FittedText::within(int width, const QFont& font) const {
    if (const Line& uncut = whole(font); uncut.width <= width)
        return uncut;
    if (fittedWidth_ != width) {
        fitted_ = fitLine(text_, font, width);
        fittedWidth_ = width;
    }
    return fitted_;
}

const Line& FittedText::whole(const QFont& font) const {
    if (!whole_)
        whole_ = fitLine(text_, font, sizes::widest);
    return *whole_;
}

void drawLine(QPainter& painter, const QRect& box, const Line& line, const QFont& font, QRgb colour,
              Qt::Alignment alignment, Qt::LayoutDirection direction) {
    int x = box.left();
    if (alignment & Qt::AlignRight)
        x += box.width() - int(std::ceil(line.width));
    else if (alignment & Qt::AlignHCenter)
        x += qRound((box.width() - line.width) / 2);
    painter.setFont(font);
    painter.setPen(QColor(colour));
    painter.setLayoutDirection(direction);
    const int y = box.top() + baseline(QFontMetrics(font), box.height());
    painter.drawText(QPointF(x, onDevicePixel(painter, y)), line.text);
}

TextBlock::TextBlock(const QString& text, const QFont& font, int width, int maximumLines,
                     Qt::LayoutDirection direction, Qt::Alignment alignment)
    : width_(qMax(width, 1)), maximumLines_(qMax(maximumLines, 1)),
      lineHeight_(lineHeight(font.pixelSize())) {
    QTextOption option(alignment);
    option.setTextDirection(direction);
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout_.setFont(font);
    layout_.setTextOption(option);

    const qsizetype filling = qMin(maximumLines_ * lettersFilling(width_), mostWrapped);
    const QString start = firstLetters(text, qMin(filling, text.size()));
    const QString whole = withLineSeparators(start);
    lay(whole);
    const QTextLine last = layout_.lineAt(layout_.lineCount() - 1);
    const qsizetype end = last.isValid() ? last.textStart() + last.textLength() : 0;
    isElided_ = last.isValid() && (end < whole.size() || start.size() < text.size());
    if (!isElided_)
        return;
    QString rest = whole.mid(last.textStart());
    const qsizetype lineEnd = rest.indexOf(QChar::LineSeparator);
    if (lineEnd >= 0)
        rest.truncate(lineEnd);
    if (lineEnd >= 0 || start.size() < text.size())
        rest += u'\u2026';
    QString kept = whole.left(last.textStart());
    if (!kept.isEmpty() && !kept.endsWith(QChar::LineSeparator))
        kept += QChar::LineSeparator;
    lay(kept + fitLine(rest, font, width_).text);
}

void TextBlock::lay(const QString& text) {
    layout_.setText(text);
    layout_.beginLayout();
    const int first = baseline(QFontMetrics(layout_.font()), lineHeight_);
    for (int i = 0; i < maximumLines_; ++i) {
        QTextLine line = layout_.createLine();
        if (!line.isValid())
            break;
        line.setLineWidth(width_);
        // A fallback font of another height must not move the baseline.
        line.setPosition(QPointF(0, first + i * lineHeight_ - line.ascent()));
    }
    layout_.endLayout();
}

int TextBlock::naturalWidth() const {
    qreal widest = 0;
    for (int i = 0; i < layout_.lineCount(); ++i)
        widest = qMax(widest, layout_.lineAt(i).naturalTextWidth());
    return int(std::ceil(widest));
}

int TextBlock::leftmost() const {
    qreal left = width_;
    for (int i = 0; i < layout_.lineCount(); ++i)
        left = qMin(left, layout_.lineAt(i).naturalTextRect().left());
    return int(std::floor(left));
}

void TextBlock::draw(QPainter& painter, const QPoint& topLeft, QRgb colour) const {
    painter.setPen(QColor(colour));
    for (int i = 0; i < layout_.lineCount(); ++i) {
        const QTextLine line = layout_.lineAt(i);
        const qreal y = topLeft.y() + line.y() + line.ascent();
        line.draw(&painter,
                  QPointF(topLeft.x(), onDevicePixel(painter, y) - line.y() - line.ascent()));
    }
}

} // namespace look
