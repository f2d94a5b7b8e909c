#pragma once

#include "look/controls/Panel.h"

#include <functional>
#include <string>

namespace look {
class PopUp;
}

namespace app {

// Asks for the interface's language. Main thread.
class LanguageDialog : public look::Panel {
    Q_OBJECT
public:
    explicit LanguageDialog(QStackedWidget* pages);

    // The language that is selected: one of the catalogue's codes, never empty. "Automatic" is
    // resolved now and later changes of the system's language do not follow.
    std::string chosenLanguage() const;

private:
    look::PopUp* languages_;
};

// Lets the person choose the language over what `pages` shows, saves it, and says so in that
// language. The window keeps its own until it is opened again. `notSaved` is called where it could
// not be saved. Returns at once. Main thread.
void offerLanguages(QStackedWidget* pages, std::function<void()> notSaved);

} // namespace app
