#pragma once

#include "look/controls/Panel.h"

#include <string>

namespace look {
class PopUp;
}

namespace app {

// Asks for the interface's language. Main thread.
class LanguageDialog : public look::Panel {
    Q_OBJECT
public:
    explicit LanguageDialog(QWidget* parent);

    // The language that is selected: one of the catalogue's codes, never empty. "Automatic" is
    // resolved now and later changes of the system's language do not follow.
    std::string chosenLanguage() const;

private:
    look::PopUp* languages_;
};

// Says that the language was saved, in that language.
look::Panel* makeLanguageConfirmation(const std::string& language, QWidget* parent);

} // namespace app
