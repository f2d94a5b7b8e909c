#include "look/controls/PopUp.h"

#include "look/accessibility/Accessibility.h"
#include "look/style/Sizes.h"

#include <QApplication>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QTimer>

namespace look {
namespace {

// Takes the next key if it comes in this turn.
class KeyTaker : public QObject {
public:
    KeyTaker() {
        qApp->installEventFilter(this);
        QTimer::singleShot(0, qApp, [this] { delete this; });
    }

protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        const bool isKey = event->type() == QEvent::KeyPress;
        if (isKey)
            qApp->removeEventFilter(this);
        return isKey;
    }
};

} // namespace

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

// The toolkit closes the menu while it asks who overrides shortcuts. Where a desktop leaves the
// keyboard with the window below (sway), it would hand the same key to that window, too.
void PopUp::hidePopup() {
    if (QApplication::activePopupWidget())
        new KeyTaker;
    QComboBox::hidePopup();
}

// No reader reads out how an entry changes. What is chosen from the menu is read all the same: the
// menu gives the keyboard back.
void PopUp::keyPressEvent(QKeyEvent* event) {
    const QString before = currentText();
    // The toolkit tells of another value as of another name. Orca 48 reads a pop-up out anew when
    // it hears of a name that it does not remember, and it forgets them every minute.
    const Unreported value(this, QAccessible::ValueChanged);
    QComboBox::keyPressEvent(event);
    if (auto* announcer = window()->findChild<Announcer*>(); announcer && currentText() != before)
        announcer->say(currentText(), Urgency::Polite);
}

} // namespace look
