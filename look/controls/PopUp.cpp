#include "look/controls/PopUp.h"

#include "look/accessibility/Accessibility.h"
#include "look/style/Sizes.h"

#include <QStyle>
#include <QStyleOptionComboBox>
#include <QTimer>

namespace look {

PopUp::PopUp(int width, QWidget* parent) : QComboBox(parent) {
    // Its font is the application's: setting one would make the menu before anybody opens it.
    setFixedSize(width, sizes::popUp);
    setContextMenuPolicy(Qt::NoContextMenu); // it would swallow the event
}

QRect PopUp::textRectangle() const {
    QStyleOptionComboBox option;
    initStyleOption(&option);
    return style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField,
                                   this);
}

QString PopUp::elidedText() const {
    const QString entry = currentText();
    return fitLine(entry, font(), textRectangle().width()).isElided ? entry : QString();
}

// Until then the menu takes the key that closes it. Where a desktop leaves the keyboard with the
// window below (sway), the toolkit would hand that key to the dialog, too.
void PopUp::hidePopup() {
    QTimer::singleShot(0, this, [this] { QComboBox::hidePopup(); });
}

// No reader reads out how an entry changes. What is chosen from the menu is read all the same: the
// menu gives the keyboard back.
void PopUp::keyPressEvent(QKeyEvent* event) {
    const QString before = currentText();
    QComboBox::keyPressEvent(event);
    if (auto* announcer = window()->findChild<Announcer*>(); announcer && currentText() != before)
        announcer->say(currentText(), Urgency::Polite);
}

} // namespace look
