// Texts from outside on their way to the screen. Four fields: a letter for the size of the font,
// a number of pixels and one of lines, as in "a200 3"; a text; how often it is repeated; its end.

#include "look/style/Sizes.h"
#include "look/text/Fonts.h"
#include "look/text/LiteralText.h"
#include "tests/fuzz/Input.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QLoggingCategory>
#include <QTemporaryDir>

#include <chrono>
#include <cmath>
#include <ctime>

using namespace Qt::StringLiterals;
using fuzz::require;

namespace {

// What no text may take of this thread's time to be laid out, sanitizers and all. A text of usual
// length takes a tenth of a millisecond, one laid out whole without an end some seconds.
constexpr std::chrono::milliseconds longest{250};

std::chrono::nanoseconds workOfThisThread() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

// Does the work. Where it took too long a font may have been loaded: it is done once more.
template<typename Work>
void requireQuick(Work work) {
    for (int turn = 0; turn < 2; ++turn) {
        const auto begin = workOfThisThread();
        work();
        if (workOfThisThread() - begin < longest)
            return;
    }
    require(false, "only what can be seen is laid out");
}

// The text as one line: what would break it or control a terminal is a space.
QString oneLine(QString text) {
    for (QChar& letter : text) {
        const char16_t c = letter.unicode();
        if (c < 0x20 || (c >= 0x7f && c < 0xa0) || c == 0x2028 || c == 0x2029)
            letter = u' ';
    }
    return text;
}

void checkLine(const QString& text, const QFont& font, int width) {
    look::Line line;
    requireQuick([&] { line = look::fitLine(text, font, width); });
    // No letter is narrower than two pixels but a few.
    require(line.text.size() <= std::max(width, 0) / 2 + 34, "no more is drawn than can be seen");
    require(line.width <= std::max(width, 0) || line.text.size() <= 1, "a line fits its width");
    const QString whole = oneLine(text);
    if (!line.isElided) {
        require(line.text == whole, "what is not elided is whole");
        return;
    }
    // Where not even the ellipsis fits nothing is drawn that has a width; one letter alone is never
    // cut.
    if (line.width == 0 || whole.size() == 1)
        return;
    // Behind the ellipsis the toolkit closes and opens again what has no width: changes of
    // direction.
    QString drawn = line.text;
    while (drawn.size() > 1 && drawn.back().category() == QChar::Other_Format)
        drawn.chop(1);
    require(drawn.endsWith(u'\u2026'), "what is elided ends in an ellipsis");
    // In front of it a letter that the next one joins keeps its shape by a joiner.
    QString kept = drawn.chopped(1);
    if (kept.endsWith(u'\u200d') && !whole.startsWith(kept))
        kept.chop(1);
    require(whole.startsWith(kept), "what is elided is the text's beginning");
    require(line.text.isValidUtf16() || !whole.isValidUtf16(), "no character is halved");
}

void checkFitted(const QString& text, const QFont& font, int width) {
    look::FittedText fitted;
    fitted.setText(text);
    const int natural = fitted.naturalWidth(font);
    require(natural <= look::sizes::widest, "no text is wider than a screen");
    const look::Line once = fitted.within(width, font);
    const look::Line again = fitted.within(width, font);
    require(once.text == again.text && once.width == again.width, "a text is what it was");
    require(fitted.within(natural, font).width <= natural, "a box of its width elides nothing");
    require(once.width <= std::max(width, 0) || once.text.size() <= 1, "a line fits its width");
    require(fitted.text() == text, "the text is kept whole");
}

void checkBlock(const QString& text, const QFont& font, int width, int lines) {
    std::optional<look::TextBlock> block;
    requireQuick([&] { block.emplace(text, font, width, lines, Qt::LeftToRight, Qt::AlignLeft); });
    const int height = look::lineHeight(font.pixelSize());
    require(block->height() % height == 0 && block->height() <= lines * height,
            "a block has as many lines as it may have");
    require(block->height() > 0, "also an empty text has a line");
    require(block->leftmost() >= 0 || block->naturalWidth() > width,
            "a block begins within its width");
    // A text of nothing but narrow letters, to be sure of its lines.
    const bool isPlain =
        text.size() < 200 &&
        std::all_of(
            text.begin(), text.end(),
            [](QChar c) { return (c >= u'a' && c <= u'z') || c == u'\n' || c == u' '; });
    if (!isPlain || width < 40)
        return;
    require(block->naturalWidth() <= width, "a block is no wider than its place");
    const QStringList written = text.split(u'\n');
    const QFontMetricsF metrics(font);
    const bool isUnbroken = std::all_of(written.begin(), written.end(), [&](const QString& line) {
        return metrics.horizontalAdvance(line) <= width;
    });
    // A line break at the very end begins no line that is seen.
    const auto count = written.size() - (written.last().isEmpty() ? 1 : 0);
    if (isUnbroken && !text.isEmpty() && !written.last().isEmpty()) {
        require(block->isElided() == (count > lines), "what has its lines is not elided");
        require(block->height() == std::min<qsizetype>(count, lines) * height,
                "each line that is written is one");
    }
}

} // namespace

// The tables of the system's fonts stay until the end, and no pointer leads to them that is one.
extern "C" int __lsan_is_turned_off() {
    return 1;
}

extern "C" int LLVMFuzzerInitialize(int* count, char*** values) {
    static const QTemporaryDir runtime;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("XDG_RUNTIME_DIR", runtime.path().toUtf8());
    // Which scripts a font has not is no news here; the toolkit says it of each.
    QLoggingCategory::setFilterRules(u"qt.text.font.db=false"_s);
    static QGuiApplication application(*count, *values);
    QGuiApplication::setFont(QFont(u"Inter"_s));
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr qsizetype mostUnits = 100'000;
    const QList<QByteArray> parts = fuzz::fields(data, size, 4);
    const QByteArray& kind = parts.at(0);
    const QList<QByteArray> numbers = kind.mid(1).split(' ') + QList<QByteArray>{""};
    const int pixels[] = {11, 12, 13, 26};
    const QFont font = look::fontForNames(pixels[kind.isEmpty() ? 0 : kind.front() % 4 & 3]);
    const int width = std::clamp(numbers.at(0).toInt(), -10, 3000);
    const int lines = std::clamp(numbers.at(1).toInt(), 1, 24);
    const QString part = QString::fromUtf8(parts.at(1));
    const qsizetype turns =
        std::clamp<qsizetype>(parts.at(2).toInt(), 1, mostUnits / (part.size() + 1));
    const QString text = part.repeated(turns) + QString::fromUtf8(parts.at(3));
    checkLine(text, font, width);
    checkFitted(text, font, width);
    checkBlock(text, font, width, lines);
    return 0;
}
