#include "look/text/Fonts.h"

#include <QFontInfo>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace look {
namespace {

// The desktop's families where preferLettersOf() has put others in their place; else empty.
QStringList& desktopFamilies() {
    static QStringList families;
    return families;
}

QFont sized(QFont font, int pixels, QFont::Weight weight) {
    font.setPixelSize(pixels);
    font.setWeight(weight);
    return font;
}

} // namespace

QFont font(int pixels, QFont::Weight weight) {
    return sized(QGuiApplication::font(), pixels, weight);
}

QFont fontForNames(int pixels, QFont::Weight weight) {
    QFont desktops = QGuiApplication::font();
    if (!desktopFamilies().isEmpty())
        desktops.setFamilies(desktopFamilies());
    return sized(desktops, pixels, weight);
}

QFont titleFont() {
    QFont made = font(26, QFont::DemiBold);
    made.setLetterSpacing(QFont::AbsoluteSpacing, -0.3);
    return made;
}

int lineHeight(int pixels) {
    return pixels == 11 ? 14 : qRound(pixels * 1.21);
}

void preferLettersOf(std::string_view language) {
    QString variant;
    if (language == "zh-Hans")
        variant = u"SC"_s;
    else if (language == "ja")
        variant = u"JP"_s;
    else if (language == "ko")
        variant = u"KR"_s;
    else
        return;
    QFont font = QGuiApplication::font();
    desktopFamilies() = font.families();
    // The families under which the one common font with all variants is packaged. Latin letters
    // stay those of the desktop's font, which must be named: a generic name would be passed over.
    font.setFamilies(
        {QFontInfo(font).family(), u"Noto Sans CJK "_s + variant, u"Source Han Sans "_s + variant});
    QGuiApplication::setFont(font);
}

} // namespace look
