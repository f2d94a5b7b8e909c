#pragma once

#include "jobs/FailureDetail.h"
#include "tests/fuzz/Input.h"

#include <QDir>
#include <QString>
#include <QTemporaryFile>

#include <algorithm>
#include <optional>

// What a log says about a failure, by other means: the whole of it at once, letter by letter.
namespace fuzz {

// A file of one process, in memory where the system has a place for that, rewritten for each run.
class LogFile {
public:
    LogFile()
        : file_((QDir(u"/dev/shm"_s).exists() ? u"/dev/shm"_s : QDir::tempPath()) +
                u"/fuzz-XXXXXX.log"_s) {
        require(file_.open(), "a file can be made");
    }

    QString holding(const QByteArray& bytes) {
        require(file_.resize(0) && file_.seek(0) && file_.write(bytes) == bytes.size() &&
                    file_.flush(),
                "a file can be written");
        return file_.fileName();
    }

private:
    QTemporaryFile file_;
};

// Nothing where the bytes are no UTF-8: each character is read, written again, and compared.
inline std::optional<QString> readUtf8(const QByteArray& text) {
    const auto* at = reinterpret_cast<const unsigned char*>(text.constData());
    const auto* const end = at + text.size();
    QString read;
    read.reserve(text.size());
    while (at < end) {
        // What is ASCII goes over at once: a log is long.
        const auto* const ascii = std::find_if(at, end, [](unsigned char c) { return c > 0x7f; });
        read += QLatin1String(reinterpret_cast<const char*>(at), ascii - at);
        at = ascii;
        if (at == end)
            break;
        const int length = *at < 0xe0 ? 2 : *at < 0xf0 ? 3 : 4;
        if (*at < 0xc0 || *at >= 0xf8 || end - at < length)
            return std::nullopt;
        char32_t letter = *at & (0xff >> (length + 1));
        for (int i = 1; i < length; ++i)
            letter = letter << 6 | (at[i] & 0x3f);
        const auto follows = [](unsigned char each) { return (each & 0xc0) == 0x80; };
        const char32_t shortest[] = {0, 0, 0x80, 0x800, 0x10000};
        if (!std::all_of(at + 1, at + length, follows) || letter < shortest[length] ||
            letter > 0x10ffff || (letter >> 11) == 0x1b)
            return std::nullopt;
        const bool isPair = letter > 0xffff;
        if (isPair)
            read += QChar(char16_t(0xd7c0 + (letter >> 10)));
        read += QChar(char16_t(isPair ? 0xdc00 + (letter & 0x3ff) : letter));
        at += length;
    }
    // A byte order mark is no text.
    return read.startsWith(QChar(0xfeff)) ? read.sliced(1) : read;
}

// How long the address is that begins here; 0 where none does.
inline qsizetype addressLength(QStringView text, Qt::CaseSensitivity letterCase) {
    const auto follows = [&](qsizetype place, const char* word) {
        for (; *word != '\0'; ++word, ++place) {
            if (place >= text.size())
                return false;
            const QChar letter = text.at(place);
            if ((letterCase == Qt::CaseInsensitive ? letter.toCaseFolded() : letter) !=
                QLatin1Char(*word))
                return false;
        }
        return true;
    };
    if (!follows(0, "http"))
        return 0;
    const qsizetype colon = follows(4, "s") ? 5 : 4;
    if (!follows(colon, "://"))
        return 0;
    const qsizetype begin = colon + 3;
    qsizetype end = begin;
    // U+180E was white space once, and still is to regular expressions.
    while (end < text.size() && !isBlank(text.at(end)) && text.at(end) != QChar(0x180e))
        ++end;
    return end > begin ? end : 0;
}

inline QString withoutAddresses(const QString& text, Qt::CaseSensitivity letterCase) {
    QString clean;
    for (qsizetype i = 0; i < text.size();) {
        if (const qsizetype length = addressLength(QStringView(text).sliced(i), letterCase)) {
            clean += u"[Datendienst]"_s;
            i += length;
        } else {
            clean += text.at(i++);
        }
    }
    return clean;
}

inline bool holdsAddress(const QString& text, Qt::CaseSensitivity letterCase) {
    for (qsizetype i = 0; i < text.size(); ++i)
        if (addressLength(QStringView(text).sliced(i), letterCase) > 0)
            return true;
    return false;
}

// The text behind the last "FEHLER:"; nothing where there is none.
inline std::optional<QString> behindMarker(const QString& text) {
    const QString marker = u"FEHLER:"_s;
    std::optional<QString> behind;
    for (qsizetype at = text.indexOf(marker); at >= 0; at = text.indexOf(marker, at + 1))
        behind = text.sliced(at + marker.size());
    return behind;
}

// The whole log at once, one rule after the other.
inline QString placeDetail(const QByteArray& log) {
    const std::optional<QString> text = readUtf8(log);
    if (!text)
        return {};
    QString said = withoutBlankEnds(behindMarker(*text).value_or(*text));
    if (said.size() > 650) {
        said = said.last(650);
        if (said.front().isLowSurrogate())
            said = said.sliced(1);
    }
    return withoutAddresses(said, Qt::CaseInsensitive);
}

inline void checkPlaceLog(const QByteArray& log) {
    static LogFile file;
    const QString detail = jobs::placeFailureDetail(file.holding(log));
    require(detail.isValidUtf16(), "a detail is whole characters");
    require(!holdsAddress(detail, Qt::CaseInsensitive), "a detail shows no address");
    // The shortest address, "http://a" and a blank, becomes longer by five.
    require(detail.size() <= 650 + 73 * 5, "a detail is short");
    require(detail == placeDetail(log), "a detail is what the whole log says");
}

// The line that counts, without its addresses and before it is cut.
inline QString routeLine(const QByteArray& log) {
    QByteArray end = log.right(16384);
    if (log.size() > end.size() && end.contains('\n'))
        end = end.sliced(end.indexOf('\n') + 1);
    const QString text = readUtf8(end).value_or(QString::fromLatin1(end));
    QString line;
    if (const std::optional<QString> behind = behindMarker(text)) {
        line = withoutBlankEnds(behind->split(u'\n').first());
    } else {
        for (const QString& each : text.split(u'\n'))
            if (const QString words = withoutBlankEnds(each); !words.isEmpty())
                line = words;
    }
    return withoutAddresses(line, Qt::CaseSensitive);
}

// Whether two of these beside each other are two characters beyond any doubt.
inline bool standsAlone(QChar letter) {
    // Letters before the combining marks, and those of China and Japan.
    const char16_t c = letter.unicode();
    return (c >= 0x20 && c != 0x7f && c < 0x300 && c != 0xa9 && c != 0xad && c != 0xae) ||
           (c >= 0x3041 && c <= 0x3096) || (c >= 0x4e00 && c <= 0x9fff);
}

// Whether a character goes on here: the second half of one, or a mark on a letter. Control
// characters, and what else has no shape (half a pair may be such), carry no mark.
inline bool continues(QChar before, QChar letter) {
    const bool isMark =
        letter == QChar(0x200d) || (letter.unicode() >= 0x300 && letter.unicode() <= 0x36f);
    const bool carriesMarks = before.isLetterOrNumber() || before.isPunct() || before.isSymbol() ||
                              before.isMark() || before == u' ';
    return letter.isLowSurrogate() || (isMark && carriesMarks);
}

inline void checkRouteLog(const QByteArray& log) {
    static LogFile file;
    const QString detail = jobs::routeFailureDetail(file.holding(log));
    const QString line = routeLine(log);
    require(detail.isValidUtf16(), "a detail is whole characters");
    require(!holdsAddress(detail, Qt::CaseSensitive), "a detail shows no address");
    if (line.size() <= 500) {
        require(detail == line, "a detail is what the log's line says");
        return;
    }
    require(line.startsWith(detail), "a detail is the beginning of what the log's line says");
    require(detail.size() >= 500, "the first 500 units are shown");
    require(detail.size() == line.size() || !continues(detail.back(), line.at(detail.size())),
            "the cut is none through a character");
    for (qsizetype i = 500; i < detail.size(); ++i)
        require(!standsAlone(detail.at(i - 1)) || !standsAlone(detail.at(i)),
                "nothing is shown but what belongs to the last character");
}

} // namespace fuzz
