#include "localization/NXLocal.h"

#include <QUtf8StringView>

#include <array>
#include <charconv>

using namespace Qt::StringLiterals;

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

QString NXLocal(QStringView text) {
    return localText(text, nxui::currentLanguage(nxui::Product::ThreeD));
}

QString localText(QStringView text, const std::string& language,
                  std::span<const nxui::CatalogRow> rows) {
    // Half a surrogate pair has no UTF-8 form; turned into "?" it could only be shown wrongly.
    if (text.isEmpty() || !text.isValidUtf16())
        return u""_s;
    const std::string translated = nxui::translate(text.toUtf8().toStdString(), language, rows);
    const QUtf8StringView view(translated.data(), qsizetype(translated.size()));
    return view.isValidUtf8() ? view.toString() : text.toString();
}

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
