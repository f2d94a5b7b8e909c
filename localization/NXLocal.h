#pragma once

#include "localization/Translation.h"

#include <QString>

#include <concepts>
#include <initializer_list>
#include <span>
#include <string>

namespace localization {

// The text to show for a German text of the program: in the language of the 3D plug-in, which is
// settled on the first call and holds for the whole run. Every text on the screen passes through
// here at the moment it is set. A text without a row stays German; null becomes empty. Any thread.
QString NXLocal(QStringView text);

// What NXLocal does, in a language of the caller's choice. Other rows than the catalogue's are for
// tests. Any thread.
QString localText(QStringView text, const std::string& language,
                  std::span<const nxui::CatalogRow> rows = nxui::catalog);

// What takes the place of one placeholder: a text as it is, an integer in decimal digits, or a
// floating-point number with four decimals. Numbers look the same in every locale. Any thread.
class FormatArgument {
public:
    FormatArgument(const QString& text) : text_(text) {}
    FormatArgument(QStringView text) : text_(text.toString()) {}
    FormatArgument(std::integral auto number) : text_(QString::number(number)) {}
    FormatArgument(double number);
    FormatArgument(bool) = delete;

private:
    friend QString filled(QStringView format, std::initializer_list<FormatArgument> arguments);
    QString text_;
};

// `format` with its placeholders "%@", "%lu", "%ld" and "%.4f" replaced by the arguments in their
// order. One pass: what an argument brings along is never read as a placeholder again. A
// placeholder without an argument stays, an argument without a placeholder is left out. Any thread.
QString filled(QStringView format, std::initializer_list<FormatArgument> arguments);

} // namespace localization
