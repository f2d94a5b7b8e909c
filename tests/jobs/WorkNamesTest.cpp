#include "jobs/WorkNames.h"

#include <QLocale>
#include <QTimeZone>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace jobs;

namespace {

const QDateTime now(QDate(2026, 3, 7), QTime(9, 5, 1));
const QUuid uuid(u"{0a1b2c3d-4e5f-4a6b-8c7d-9e0f1a2b3c4d}"_s);

} // namespace

TEST(NXSlug, keeps_what_file_names_can_carry) {
    struct Case {
        const char16_t* name;
        const char16_t* slug;
    };
    const Case cases[] = {
        {u"São Paulo – Centro", u"sao-paulo-centro"},
        {u"  Köln  ", u"koln"},
        {u"東京", u"ort"},
        {u"", u"ort"},
        {u"---", u"ort"},
        {u"Zürich", u"zurich"},
        {u"İstanbul", u"istanbul"},
        {u"A/B\\C..D", u"a-b-c-d"},
        {u"Straße 5", u"stra-e-5"},
        {u"Ｔｏｋｙｏ", u"ort"},
        {u"a🎬b", u"a-b"},
        {u"../../etc", u"etc"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(NXSlug(QString::fromUtf16(c.name)), QString::fromUtf16(c.slug));
}

TEST(NXSlug, is_at_most_42_characters_long) {
    EXPECT_EQ(NXSlug(QString(60, u'x')), QString(42, u'x'));
    EXPECT_EQ(NXSlug(QString(41, u'x') + u" yyy"_s), QString(41, u'x'));
    EXPECT_EQ(NXSlug(QString(40, u'x') + u" yyy"_s), QString(40, u'x') + u"-y"_s);
}

TEST(PlaceFolderName, is_slug_time_and_six_digits) {
    EXPECT_EQ(placeFolderName(u"München"_s, now, uuid), u"munchen-20260307-090501-0A1B2C"_s);
}

TEST(PlaceFolderName, has_the_time_of_the_persons_clock_in_digits_that_every_program_reads) {
    const QDateTime elsewhere(QDate(2026, 3, 7), QTime(9, 5, 1), QTimeZone(45900)); // as in Chatham
    const QLocale before;
    for (const QLocale& persons : {QLocale(QLocale::Arabic, QLocale::Egypt),
                                   QLocale(QLocale::Persian, QLocale::Iran), QLocale::c()}) {
        QLocale::setDefault(persons);
        EXPECT_EQ(placeFolderName(u"Ulm"_s, elsewhere, uuid), u"ulm-20260307-090501-0A1B2C"_s)
            << qPrintable(persons.name());
    }
    QLocale::setDefault(before);
}

TEST(PlaceFolderName, two_of_one_second_differ) {
    EXPECT_NE(placeFolderName(u"a"_s, now, QUuid::createUuid()),
              placeFolderName(u"a"_s, now, QUuid::createUuid()));
}

TEST(RouteFolderName, joins_first_and_last_name) {
    EXPECT_EQ(routeFolderName(u" Berlin Hbf"_s, u"München Hbf\n"_s, now, uuid),
              u"berlin-hbf-munchen-hbf-20260307-090501-0A1B2C3D"_s);
    EXPECT_EQ(routeFolderName(QString(40, u'a'), QString(40, u'b'), now, uuid),
              QString(40, u'a') + u"-b-20260307-090501-0A1B2C3D"_s);
}

TEST(UpperCaseText, is_canonical) {
    EXPECT_EQ(upperCaseText(uuid), u"0A1B2C3D-4E5F-4A6B-8C7D-9E0F1A2B3C4D"_s);
}
