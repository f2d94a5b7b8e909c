#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <source_location>

// What every target of this folder needs. A target is a function from bytes to nothing that ends
// the program where the product broke a promise:
//
//     extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
//
// Its name and its meaning are libFuzzer's. It returns 0, or -1 where the bytes are of no use to
// it.
namespace fuzz {

using namespace Qt::StringLiterals;

// The end of the program where `holds` is false. `promise` says what the product promises.
inline void require(bool holds, const char* promise,
                    std::source_location where = std::source_location::current()) {
    if (holds)
        return;
    std::fprintf(stderr, "%s:%u: this promise was broken: %s\n", where.file_name(),
                 unsigned(where.line()), promise);
    std::abort();
}

inline QByteArray bytes(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), qsizetype(size)};
}

// The bytes in `count` fields, cut at ASCII's unit separator (0x1F), so that a corpus stays
// readable. What is missing is empty; the last field keeps all that is left.
inline QList<QByteArray> fields(const std::uint8_t* data, std::size_t size, int count) {
    QByteArray left = bytes(data, size);
    QList<QByteArray> cut;
    while (cut.size() < count - 1) {
        const qsizetype end = left.indexOf('\x1f');
        cut << (end < 0 ? left : left.first(end));
        left = end < 0 ? QByteArray() : left.sliced(end + 1);
    }
    return cut << left;
}

// The bytes as a text of the toolkit, which is UTF-16 and may hold half a surrogate pair: that
// stands for what is not UTF-8.
inline QString text(const QByteArray& bytes) {
    return QString::fromUtf8(bytes).replace(QChar::ReplacementCharacter, QChar(0xd83d));
}

// What Unicode calls White_Space.
inline bool isBlank(QChar letter) {
    static const QString blanks =
        u"\t\n\v\f\r \u0085\u00a0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006"
        "\u2007\u2008\u2009\u200a\u2028\u2029\u202f\u205f\u3000"_s;
    return blanks.contains(letter);
}

inline QString withoutBlankEnds(const QString& text) {
    const QChar* begin = text.constData();
    const QChar* end = begin + text.size();
    while (begin < end && isBlank(*begin))
        ++begin;
    while (begin < end && isBlank(end[-1]))
        --end;
    return QString(begin, end - begin);
}

} // namespace fuzz
