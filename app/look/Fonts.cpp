#include "Fonts.h"

#include <QGuiApplication>

namespace look {

QFont font(int pixels, QFont::Weight weight) {
    QFont made = QGuiApplication::font();
    made.setPixelSize(pixels);
    made.setWeight(weight);
    return made;
}

QFont titleFont() {
    QFont made = font(26, QFont::DemiBold);
    made.setLetterSpacing(QFont::AbsoluteSpacing, -0.3);
    return made;
}

int lineHeight(int pixels) {
    switch (pixels) {
    case 11:
        return 14;
    case 12:
        return 15;
    case 13:
        return 16;
    case 26:
        return 31;
    default:
        return qRound(pixels * 1.21);
    }
}

} // namespace look
