#pragma once

#include "localization/FilledText.h"
#include "localization/Translation.h"

#include <QString>

#include <span>
#include <string>

namespace localization {

// The text to show for a German text of the program: in the language of the 3D plug-in, which is
// settled on the first call and holds for the whole run. Every text on the screen passes through
// here at the moment it is set. A text without a row stays German; null becomes empty.
// Any thread.
QString NXLocal(QStringView text);

// What NXLocal does, in a language of the caller's choice. Other rows than the catalogue's are for
// tests. Any thread.
QString localText(QStringView text, const std::string& language,
                  std::span<const nxui::CatalogRow> rows = nxui::catalog);

} // namespace localization
