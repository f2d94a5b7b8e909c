#include "jobs/WorkNames.h"

#include <QLocale>

using namespace Qt::StringLiterals;

namespace jobs {
namespace {

constexpr qsizetype longestSlug = 42;

bool isDiacritic(QChar c) {
    return c.category() == QChar::Mark_NonSpacing;
}

bool isSlugCharacter(QChar c) {
    return (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9');
}

QString folderName(const QString& slug, const QDateTime& now, const QUuid& uuid, qsizetype digits) {
    // The C locale: the name must not change with the person's calendar or digits.
    return u"%1-%2-%3"_s.arg(slug, QLocale::c().toString(now, u"yyyyMMdd-HHmmss"),
                             upperCaseText(uuid).first(digits));
}

} // namespace

QString NXSlug(const QString& text) {
    QString slug;
    for (const QChar c : text.normalized(QString::NormalizationForm_D).toLower()) {
        if (slug.size() == longestSlug)
            break;
        if (isSlugCharacter(c))
            slug += c;
        else if (!isDiacritic(c) && !slug.isEmpty() && !slug.endsWith(u'-'))
            slug += u'-';
    }
    if (slug.endsWith(u'-'))
        slug.chop(1);
    return slug.isEmpty() ? u"ort"_s : slug;
}

QString placeFolderName(const QString& place, const QDateTime& now, const QUuid& uuid) {
    return folderName(NXSlug(place), now, uuid, 6);
}

QString routeFolderName(const QString& first, const QString& last, const QDateTime& now,
                        const QUuid& uuid) {
    return folderName(NXSlug(first.trimmed() + u'-' + last.trimmed()), now, uuid, 8);
}

QString upperCaseText(const QUuid& uuid) {
    return uuid.toString(QUuid::WithoutBraces).toUpper();
}

} // namespace jobs
