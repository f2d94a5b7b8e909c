#include "app/Composition.h"

#include "localization/Language.h"
#include "look/style/Style.h"
#include "look/text/Fonts.h"

#include <QApplication>

namespace app {

void compose(QApplication& application) {
    const std::string language = nxui::currentLanguage(nxui::Product::ThreeD);
    QApplication::setLayoutDirection(nxui::isRightToLeft(language) ? Qt::RightToLeft
                                                                   : Qt::LeftToRight);
    look::preferLettersOf(language);
    look::applyLook(application);
}

} // namespace app
