#pragma once

#include <QByteArray>
#include <QVariant>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <utility>

namespace fuzz {

// What a value that was read is.
inline bool isText(const QVariant& value) {
    return value.typeId() == QMetaType::QString;
}
inline bool isNumber(const QVariant& value) {
    return value.typeId() == QMetaType::LongLong || value.typeId() == QMetaType::Double;
}
inline bool isList(const QVariant& value) {
    return value.typeId() == QMetaType::QVariantList;
}
inline bool isObject(const QVariant& value) {
    return value.typeId() == QMetaType::QVariantMap;
}

// A reader of JSON by RFC 8259 that shares nothing with the toolkit's and refuses what the standard
// refuses. A number without fraction and exponent is an integer where it fits 64 bits, as the
// toolkit has it; a number beyond a double's range at either end, and more than 200 levels, are
// refused.
class StrictJson {
public:
    // Of a member that stands twice the last one counts, or the document is refused.
    enum class Twice { LastCounts, Refused };

    static std::optional<QVariant> read(const QByteArray& bytes, Twice twice = Twice::LastCounts) {
        if (!bytes.isValidUtf8())
            return std::nullopt;
        StrictJson reader(bytes, twice);
        const QVariant value = reader.value(200);
        reader.skipBlanks();
        return reader.isValid_ && reader.at_ == bytes.size() ? std::optional(value) : std::nullopt;
    }

private:
    StrictJson(const QByteArray& bytes, Twice twice) : bytes_(bytes), twice_(twice) {}

    char next() const { return at_ < bytes_.size() ? bytes_.at(at_) : '\0'; }
    bool take(char wanted) {
        if (next() != wanted || at_ == bytes_.size())
            return false;
        ++at_;
        return true;
    }
    QVariant refuse() {
        isValid_ = false;
        return {};
    }
    void skipBlanks() {
        while (at_ < bytes_.size() && QByteArrayView(" \t\r\n").contains(next()))
            ++at_;
    }
    bool takeDigits() {
        const qsizetype begin = at_;
        while (next() >= '0' && next() <= '9')
            ++at_;
        return at_ > begin;
    }

    QVariant value(int levels) {
        skipBlanks();
        if (levels == 0)
            return refuse();
        if (take('{'))
            return object(levels - 1);
        if (take('['))
            return array(levels - 1);
        if (take('"'))
            return text();
        const std::pair<QByteArrayView, QVariant> words[] = {
            {"true", true}, {"false", false}, {"null", QVariant::fromValue(nullptr)}};
        for (const auto& [word, meaning] : words) {
            if (QByteArrayView(bytes_).sliced(at_).startsWith(word)) {
                at_ += word.size();
                return meaning;
            }
        }
        return number();
    }

    QVariant object(int levels) {
        QVariantMap members;
        skipBlanks();
        if (take('}'))
            return members;
        do {
            skipBlanks();
            if (!take('"'))
                return refuse();
            const QString key = text();
            skipBlanks();
            if (!take(':') || (twice_ == Twice::Refused && members.contains(key)))
                return refuse();
            members[key] = value(levels);
            skipBlanks();
        } while (isValid_ && take(','));
        return take('}') ? members : refuse();
    }

    QVariant array(int levels) {
        QVariantList elements;
        skipBlanks();
        if (take(']'))
            return elements;
        do {
            elements += value(levels);
            skipBlanks();
        } while (isValid_ && take(','));
        return take(']') ? elements : refuse();
    }

    // Behind the first quotation mark.
    QString text() {
        QString written;
        qsizetype begin = at_; // of what stands for itself
        const auto takePlain = [&] {
            written += QString::fromUtf8(bytes_.mid(begin, at_ - begin));
        };
        for (; at_ < bytes_.size(); ++at_) {
            const char byte = next();
            if (static_cast<unsigned char>(byte) < 0x20)
                break;
            if (byte == '"') {
                takePlain();
                ++at_;
                return written;
            }
            if (byte == '\\') {
                takePlain();
                ++at_;
                written += escaped();
                begin = at_ + 1;
            }
        }
        isValid_ = false;
        return {};
    }

    // Behind the backslash; ends at the last letter of the escape.
    QChar escaped() {
        constexpr QByteArrayView letters = "\"\\/bfnrt";
        constexpr QByteArrayView meanings = "\"\\/\b\f\n\r\t";
        if (const qsizetype letter = letters.indexOf(next()); letter >= 0)
            return QLatin1Char(meanings[letter]);
        bool isNumber = false;
        const QByteArray digits = bytes_.mid(at_ + 1, 4);
        const char16_t unit = char16_t(digits.toUInt(&isNumber, 16));
        const bool isEscape = next() == 'u' && isNumber && digits.size() == 4 &&
                              std::ranges::all_of(digits, [](char each) {
                                  return QByteArrayView("0123456789abcdefABCDEF").contains(each);
                              });
        isValid_ = isValid_ && isEscape;
        at_ += isEscape ? 4 : 0;
        return unit;
    }

    QVariant number() {
        const qsizetype begin = at_;
        take('-');
        if (!take('0') && !takeDigits())
            return refuse();
        const qsizetype integer = at_;
        if (take('.') && !takeDigits())
            return refuse();
        if (take('e') || take('E')) {
            if (!take('+'))
                take('-');
            if (!takeDigits())
                return refuse();
        }
        const QByteArray written = bytes_.mid(begin, at_ - begin);
        errno = 0;
        if (at_ == integer) {
            const long long whole = std::strtoll(written.constData(), nullptr, 10);
            if (errno == 0)
                return whole;
        }
        errno = 0;
        const double real = std::strtod(written.constData(), nullptr);
        if (std::isinf(real) || (errno != 0 && real == 0))
            return refuse();
        return real == 0 ? 0 : real; // as the toolkit has it: a zero has no sign
    }

    const QByteArray& bytes_;
    const Twice twice_;
    qsizetype at_ = 0;
    bool isValid_ = true;
};

} // namespace fuzz
