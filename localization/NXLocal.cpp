#include "localization/NXLocal.h"

#include <QUtf8StringView>

using namespace Qt::StringLiterals;

namespace localization {

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

} // namespace localization
