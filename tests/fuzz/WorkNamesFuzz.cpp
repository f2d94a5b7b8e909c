// Texts as the names of places: what becomes of them in the names of folders. Three fields: a place
// or a route's first station, a route's last station, and a number of seconds, which is when.

#include "jobs/WorkNames.h"
#include "tests/fuzz/Input.h"

#include <QRegularExpression>
#include <QTimeZone>

using namespace Qt::StringLiterals;

namespace {

// A letter without its accents, as far as it can be taken apart; a space for a pair's half.
QString base(QChar letter) {
    if (letter.isSurrogate())
        return u" "_s;
    if (letter.decompositionTag() != QChar::Canonical)
        return letter.category() == QChar::Mark_NonSpacing ? QString() : QString(letter);
    QString found;
    for (const QChar part : letter.decomposition())
        found += base(part);
    return found;
}

// The rule by way of words: what is no letter and no digit of ASCII parts them.
QString naiveSlug(const QString& text) {
    QString parted;
    for (const QChar letter : text) {
        for (const QChar part : base(letter)) {
            const char16_t c = part.unicode();
            if (c >= 'A' && c <= 'Z')
                parted += QChar(char16_t(c + 32));
            else
                parted += (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ? part : u' ';
        }
    }
    const QString slug = parted.split(u' ', Qt::SkipEmptyParts).join(u'-').left(42);
    if (slug.isEmpty())
        return u"ort"_s;
    return slug.endsWith(u'-') ? slug.chopped(1) : slug;
}

// Whether a letter outside the first plane is there, half or whole. Some of these are accents too,
// but of no letter of ASCII.
bool holdsPairs(const QString& text) {
    return std::any_of(text.begin(), text.end(), [](QChar each) { return each.isSurrogate(); });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using fuzz::require;
    static const QRegularExpression slugRule(u"\\A(?=.{1,42}\\z)[a-z0-9]+(-[a-z0-9]+)*\\z"_s);
    const QList<QByteArray> parts = fuzz::fields(data, size, 3);
    const QString first = QString::fromUtf8(parts.at(0));
    const QString last = QString::fromUtf8(parts.at(1));
    const QString slug = jobs::NXSlug(first);
    require(slugRule.match(slug).hasMatch(), "a slug is a file's name anywhere");
    require(jobs::NXSlug(slug) == slug, "a slug is its own slug");
    if (!holdsPairs(first))
        require(slug == naiveSlug(first), "a slug is the name's words");

    // Years of four digits.
    const qint64 seconds = parts.at(2).left(11).toLongLong() % 200'000'000'000;
    const QDateTime now =
        QDateTime::fromSecsSinceEpoch(std::max<qint64>(seconds, 0), QTimeZone::utc());
    const QUuid uuid = QUuid::createUuidV5(QUuid(), first);
    const QDate day = now.date();
    const QTime time = now.time();
    const QString when = QString::asprintf("-%04d%02d%02d-%02d%02d%02d-", day.year(), day.month(),
                                           day.day(), time.hour(), time.minute(), time.second());
    const QString digits = QString::fromLatin1(uuid.toRfc4122().toHex().toUpper());
    require(jobs::upperCaseText(uuid).remove(u'-') == digits, "a folder's digits are its number's");
    require(jobs::placeFolderName(first, now, uuid) == slug + when + digits.first(6),
            "a place's folder is slug, time and six digits");
    const QString route = jobs::routeFolderName(first, last, now, uuid);
    const QString names = jobs::NXSlug(first + u'-' + last);
    require(route == names + when + digits.first(8),
            "a route's folder is the slug of both names, time and eight digits");
    return 0;
}
