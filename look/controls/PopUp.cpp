#include "look/controls/PopUp.h"

#include "look/style/Sizes.h"
#include "look/style/ToolTip.h"
#include "look/text/LiteralText.h"

#include <QHelpEvent>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QWheelEvent>

namespace look {

PopUp::PopUp(int width, QWidget* parent) : QComboBox(parent) {
    // Its font is the application's: setting one would make the menu before anybody opens it.
    setFixedSize(width, sizes::popUp);
}

QRect PopUp::textRectangle() const {
    QStyleOptionComboBox option;
    initStyleOption(&option);
    return style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField,
                                   this);
}

bool PopUp::isElided() const {
    return fitLine(currentText(), font(), textRectangle().width()).isElided;
}

bool PopUp::event(QEvent* event) {
    if (event->type() == QEvent::ToolTip && toolTip().isEmpty() && isElided()) {
        showToolTip(static_cast<QHelpEvent*>(event)->globalPos(), currentText(), this);
        return true;
    }
    return QComboBox::event(event);
}

void PopUp::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

} // namespace look
