// A format and what fills it: for each argument the letter of its type and its value.

#include "localization/NXLocal.h"
#include "tests/fuzz/Input.h"

#include <array>
#include <cstdio>
#include <vector>

using localization::filled;
using localization::FormatArgument;

namespace {

struct Argument {
    FormatArgument given;
    QString expected;
};

// The C library writes the numbers a second time; it speaks its own locale here.
Argument argumentOf(const QByteArray& field) {
    const QByteArray value = field.mid(1);
    const auto number = [&] { return std::strtoll(value.constData(), nullptr, 0); };
    switch (field.isEmpty() ? '\0' : field.front()) {
    case 'd': {
        const double real = std::strtod(value.constData(), nullptr);
        std::array<char, 400> digits;
        std::snprintf(digits.data(), digits.size(), "%.4f", real);
        return {real, QString::fromLatin1(digits.data())};
    }
    case 'i':
        return {int(number()), QString::fromStdString(std::to_string(int(number())))};
    case 'l':
        return {number(), QString::fromStdString(std::to_string(number()))};
    case 'u': {
        const auto positive = std::strtoull(value.constData(), nullptr, 0);
        return {positive, QString::fromStdString(std::to_string(positive))};
    }
    default:
        const QString text = fuzz::text(value);
        return {QStringView(text), text};
    }
}

// Cuts the format at the placeholder that stands nearest to its begin, again and again.
QString naivelyFilled(QString format, const std::vector<Argument>& arguments) {
    QString result;
    for (const Argument& argument : arguments) {
        qsizetype nearest = format.size();
        qsizetype behind = nearest;
        for (const char16_t* name : {u"@", u"lu", u"ld", u".4f"}) {
            const QString placeholder = u'%' + QString::fromUtf16(name);
            const qsizetype found = format.indexOf(placeholder);
            if (found < 0 || found >= nearest)
                continue;
            nearest = found;
            behind = found + placeholder.size();
        }
        if (nearest == format.size())
            break;
        result += format.left(nearest) + argument.expected;
        format.remove(0, behind);
    }
    return result + format;
}

QString filledWith(const QString& format, const std::vector<Argument>& all) {
    switch (all.size()) {
    case 0:
        return filled(format, {});
    case 1:
        return filled(format, {all[0].given});
    case 2:
        return filled(format, {all[0].given, all[1].given});
    case 3:
        return filled(format, {all[0].given, all[1].given, all[2].given});
    default:
        return filled(format, {all[0].given, all[1].given, all[2].given, all[3].given});
    }
}

} // namespace

// The format, then up to four arguments.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QList<QByteArray> fields = fuzz::bytes(data, size).split('\x1f');
    if (fields.size() > 5)
        return -1;
    const QString format = fuzz::text(fields.first());
    std::vector<Argument> arguments;
    for (const QByteArray& field : fields.sliced(1))
        arguments.push_back(argumentOf(field));
    fuzz::require(filledWith(format, arguments) == naivelyFilled(format, arguments),
                  "each placeholder is replaced by the argument of its place, in one pass");
    return 0;
}
