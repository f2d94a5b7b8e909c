#pragma once

#include "localization/FilledText.h"
#include "localization/Translation.h"

namespace localization {

// The text to show for a German text of the program: in the language of the 3D plug-in, which is
// settled on the first call and holds for the whole run. Every text on the screen passes through
// here at the moment it is set. A text without a row stays German; null becomes empty.
// From any thread.
QString NXLocal(QStringView text);

// filled(NXLocal(text), arguments)
QString localFilled(QStringView text, std::initializer_list<FormatArgument> arguments);

// What NXLocal does, in a language of the caller's choice and from rows of its choice.
QString localText(QStringView text, const std::string& language,
                  std::span<const nxui::CatalogRow> rows = nxui::catalog);

} // namespace localization
