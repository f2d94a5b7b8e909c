#include "jobs/FailureDetail.h"

#include <QFile>
#include <QRegularExpression>
#include <QStringDecoder>
#include <QTextBoundaryFinder>

using namespace Qt::StringLiterals;

namespace jobs {
namespace {

constexpr auto marker = "FEHLER:"_L1;

// The end of a text that arrives in pieces: as if the whole text had been trimmed and then cut to
// its last `longest` units, without ever holding more than that and one piece.
class TrimmedEnd {
public:
    void clear() {
        kept_.clear();
        blanks_.clear();
    }

    void append(QStringView piece) {
        if (kept_.isEmpty())
            while (!piece.isEmpty() && piece.front().isSpace())
                piece = piece.sliced(1);
        qsizetype end = piece.size();
        while (end > 0 && piece.at(end - 1).isSpace())
            --end;
        if (end > 0) {
            // What was blank so far stood in the middle after all.
            kept_ = last(last(kept_) + blanks_ + last(piece.first(end)));
            blanks_.clear();
        }
        if (!kept_.isEmpty())
            blanks_ = last(blanks_ + last(piece.sliced(end)));
    }

    const QString& text() const { return kept_; }

private:
    static constexpr qsizetype longest = 650;

    // Half a character is no text: nothing would be found in what begins with one.
    static QString last(QStringView text) {
        QStringView end = text.last(std::min(text.size(), longest));
        if (end.size() < text.size() && end.front().isLowSurrogate())
            end = end.sliced(1);
        return end.toString();
    }

    QString kept_;   // ends in a character that is not white space
    QString blanks_; // white space after it, which may turn out to be the text's end
};

QString withoutAddresses(QString text, QRegularExpression::PatternOptions letterCase) {
    const QRegularExpression address(u"https?://[^\\s]+"_s,
                                     letterCase | QRegularExpression::UseUnicodePropertiesOption);
    return text.replace(address, u"[Datendienst]"_s);
}

// Whether no character begins with this unit. Among joined emojis the toolkit sees boundaries
// before such units, too, and so would halve one of them.
bool continuesCharacter(QChar unit) {
    constexpr QChar joiner(u'\u200d');
    return unit.isLowSurrogate() || unit.isMark() || unit == joiner;
}

// The first 500 units, and what belongs to the last character of these.
QString firstWholeCharacters(const QString& text) {
    constexpr qsizetype longest = 500;
    if (text.size() <= longest)
        return text;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    finder.setPosition(longest);
    while (finder.position() < text.size() &&
           (!finder.isAtBoundary() || continuesCharacter(text.at(finder.position()))))
        finder.toNextBoundary();
    return text.first(finder.position());
}

// The log's end, starting with a whole line; empty when it cannot be read.
QByteArray lastLines(const QString& logPath) {
    constexpr qint64 longest = 16384;
    QFile log(logPath);
    if (!log.open(QIODevice::ReadOnly))
        return {};
    const qint64 size = log.size();
    if (!log.seek(std::max<qint64>(0, size - longest)))
        return {};
    QByteArray end = log.read(longest);
    if (size > longest)
        end.remove(0, end.indexOf('\n') + 1);
    return end;
}

QString decoded(const QByteArray& bytes) {
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = utf8(bytes);
    return utf8.hasError() ? QString::fromLatin1(bytes) : text;
}

QString lastLineWithText(const QString& text) {
    const QList<QStringView> lines = QStringView(text).split(u'\n');
    for (auto line = lines.crbegin(); line != lines.crend(); ++line)
        if (const QStringView words = line->trimmed(); !words.isEmpty())
            return words.toString();
    return {};
}

} // namespace

QString placeFailureDetail(const QString& logPath) {
    QFile log(logPath);
    if (!log.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return {};
    QStringDecoder utf8(QStringDecoder::Utf8);
    TrimmedEnd end;
    QString carried; // the last characters of the piece before: a marker may begin in it
    QByteArray bytes(65536, Qt::Uninitialized);
    for (;;) {
        const qint64 count = log.read(bytes.data(), bytes.size());
        if (count < 0)
            return {};
        if (count == 0)
            break;
        const QString piece = carried + QString(utf8(QByteArrayView(bytes.constData(), count)));
        if (utf8.hasError())
            return {};
        qsizetype begin = 0;
        if (const qsizetype found = piece.lastIndexOf(marker); found >= 0) {
            end.clear();
            begin = found + marker.size();
        }
        const qsizetype held = std::min(piece.size() - begin, marker.size() - 1);
        end.append(QStringView(piece).sliced(begin, piece.size() - begin - held));
        carried = piece.last(held);
    }
    // A last character that was never completed shows only when another one follows.
    const QString lineBreak = utf8("\n");
    if (utf8.hasError())
        return {};
    end.append(carried + lineBreak);
    return withoutAddresses(end.text(), QRegularExpression::CaseInsensitiveOption);
}

QString routeFailureDetail(const QString& logPath) {
    const QString text = decoded(lastLines(logPath));
    const qsizetype found = text.lastIndexOf(marker);
    const QString line = found < 0 ? lastLineWithText(text)
                                   : text.sliced(found + marker.size()).section(u'\n', 0, 0);
    return firstWholeCharacters(
        withoutAddresses(line.trimmed(), QRegularExpression::NoPatternOption));
}

} // namespace jobs
