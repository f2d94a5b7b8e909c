#include "localization/FilledText.h"

#include <array>
#include <charconv>

namespace localization {
namespace {

// The length of the placeholder that `format` begins with, 0 when it begins with none.
qsizetype placeholderLength(QStringView format) {
    constexpr std::array<QStringView, 4> placeholders = {u"%@", u"%lu", u"%ld", u"%.4f"};
    for (const QStringView placeholder : placeholders)
        if (format.startsWith(placeholder))
            return placeholder.size();
    return 0;
}

} // namespace

// Not QString::number, which drops the sign of a negative zero: "%.4f" keeps it.
FormatArgument::FormatArgument(double number) {
    std::array<char, 320> digits; // the largest number has 309 before its four decimals
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                            std::chars_format::fixed, 4);
    Q_ASSERT(error == std::errc());
    text_ = QString::fromLatin1(digits.data(), end - digits.data());
}

QString filled(QStringView format, std::initializer_list<FormatArgument> arguments) {
    QString result;
    const FormatArgument* argument = arguments.begin();
    while (!format.isEmpty()) {
        const qsizetype length = placeholderLength(format);
        if (length > 0 && argument != arguments.end()) {
            result += (argument++)->text_;
            format = format.sliced(length);
        } else {
            result += format.front();
            format = format.sliced(1);
        }
    }
    return result;
}

} // namespace localization
