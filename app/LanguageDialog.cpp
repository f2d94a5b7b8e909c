#include "app/LanguageDialog.h"

#include "localization/Language.h"
#include "localization/NXLocal.h"
#include "look/controls/PopUp.h"
#include "look/text/Fonts.h"
#include "look/text/Label.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace app {

using localization::localText;
using localization::NXLocal;

namespace {

// In their own words; never translated.
QStringList languageNames() {
    QStringList names;
    for (const nxui::Language& language : nxui::languages)
        names.append(QString::fromUtf8(language.ownName));
    return names;
}

// The pop-up's entry for the language in use; 0 for none.
int entryInUse() {
    constexpr auto product = nxui::Product::ThreeD;
    const std::string stored = nxui::readLanguage(product, nxui::homeDirectory());
    const std::string code = stored.empty() ? nxui::currentLanguage(product) : stored;
    const auto found = std::ranges::find(nxui::languageCodes, code);
    return found == nxui::languageCodes.end() ? 0 : int(found - nxui::languageCodes.begin()) + 1;
}

void confirm(const std::string& language, QStackedWidget* pages) {
    auto* panel = new look::Panel(
        look::PanelKind::Dialog, localText(u"Sprache gespeichert"_s, language),
        localText(
            u"Die neue Sprache ist gespeichert. Dieses Suchfenster wird beim nächsten Öffnen aktualisiert. Bitte DaVinci Resolve neu starten."_s,
            language),
        pages);
    panel->setLayoutDirection(nxui::isRightToLeft(language) ? Qt::RightToLeft : Qt::LeftToRight);
    // The same in every language.
    panel->setButtons(u"OK"_s);
    panel->open();
}

} // namespace

LanguageDialog::LanguageDialog(QStackedWidget* pages)
    : Panel(look::PanelKind::Dialog, NXLocal(u"Sprache wählen"_s),
            NXLocal(u"Die Sprache wird nur auf diesem Gerät gespeichert."_s), pages),
      languages_(new look::PopUp(300)) {
    languages_->setObjectName("languages"_L1);
    languages_->setFont(look::fontForNames(13));
    languages_->addItem(NXLocal(u"Automatisch (Systemsprache)"_s));
    languages_->addItems(languageNames());
    languages_->setCurrentIndex(entryInUse());
    setAccessory(languages_);
    heading()->setBuddy(languages_);
    setButtons(NXLocal(u"Übernehmen"_s), NXLocal(u"Abbrechen"_s));
}

std::string LanguageDialog::chosenLanguage() const {
    return std::string(nxui::languageForIndex(languages_->currentIndex()));
}

void offerLanguages(QStackedWidget* pages, std::function<void()> notSaved) {
    auto* dialog = new LanguageDialog(pages);
    QObject::connect(dialog, &QDialog::accepted, dialog, [=, notSaved = std::move(notSaved)] {
        const std::string language = dialog->chosenLanguage();
        if (nxui::saveLanguage(nxui::Product::ThreeD, language, nxui::homeDirectory()))
            confirm(language, pages);
        else
            notSaved();
    });
    dialog->open();
}

} // namespace app
