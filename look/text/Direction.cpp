#include "look/text/Direction.h"

#include <algorithm>

namespace look {
namespace {

constexpr QChar leftToRightIsolate(0x2066);
constexpr QChar firstStrongIsolate(0x2068);
constexpr QChar popIsolate(0x2069);

bool isRightToLeft(QChar letter) {
    return letter.direction() == QChar::DirR || letter.direction() == QChar::DirAL;
}

} // namespace

Qt::LayoutDirection ownDirection(const QString& text, Qt::LayoutDirection otherwise) {
    for (const QChar letter : text) {
        if (letter.direction() == QChar::DirL)
            return Qt::LeftToRight;
        if (isRightToLeft(letter))
            return Qt::RightToLeft;
    }
    return otherwise;
}

bool holdsRightToLeft(const QString& text) {
    return std::ranges::any_of(text, isRightToLeft);
}

QString isolated(const QString& text) {
    return firstStrongIsolate + text + popIsolate;
}

QString isolatedLeftToRight(const QString& text) {
    return leftToRightIsolate + text + popIsolate;
}

QString within(const QString& sentence, const QString& text) {
    return holdsRightToLeft(sentence) || holdsRightToLeft(text) ? isolated(text) : text;
}

} // namespace look
