#include "jobs/FailureDetail.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/resource.h>

using namespace Qt::StringLiterals;
using namespace jobs;

namespace {

class FailureDetail : public testing::Test {
protected:
    QString log(const QByteArray& bytes) {
        const QString path = folder_.filePath(u"log"_s);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        EXPECT_EQ(file.write(bytes), bytes.size());
        return path;
    }

    QString place(const QByteArray& bytes) { return placeFailureDetail(log(bytes)); }
    QString route(const QByteArray& bytes) { return routeFailureDetail(log(bytes)); }

    QTemporaryDir folder_;
};

} // namespace

TEST_F(FailureDetail, place_takes_everything_after_the_last_marker) {
    EXPECT_EQ(place("a\nFEHLER: eins\nb\nFEHLER:  zwei\nund drei\n\n"), u"zwei\nund drei"_s);
    EXPECT_EQ(place("FEHLER: eins FEHLER: zwei"), u"zwei"_s);
    EXPECT_EQ(place("FEHLER:"), QString());
}

TEST_F(FailureDetail, place_takes_the_whole_log_without_a_marker) {
    EXPECT_EQ(place("\n  nur dies \n\n"), u"nur dies"_s);
    EXPECT_EQ(place("Fehler: klein"), u"Fehler: klein"_s);
    EXPECT_EQ(place(""), QString());
    EXPECT_EQ(place(" \n\n\t"), QString());
}

TEST_F(FailureDetail, place_keeps_the_last_650_units) {
    EXPECT_EQ(place(QByteArray("FEHLER: a") + QByteArray(649, 'x')), u'a' + QString(649, u'x'));
    EXPECT_EQ(place(QByteArray("FEHLER: a") + QByteArray(650, 'x')), QString(650, u'x'));
    EXPECT_EQ(place(QByteArray("FEHLER: a") + QByteArray(700, ' ') + "b"),
              QString(649, u' ') + u'b');
    EXPECT_EQ(place(QByteArray("FEHLER: a") + QByteArray(100000, '\n')), u"a"_s);
}

TEST_F(FailureDetail, place_masks_service_addresses_in_any_case) {
    EXPECT_EQ(place("FEHLER: Dienst (https://a.example/x?y=z) antwortet nicht"),
              u"Dienst ([Datendienst] antwortet nicht"_s);
    EXPECT_EQ(place("FEHLER: HTTP://a und https://b.c\nund"),
              u"[Datendienst] und [Datendienst]\nund"_s);
    EXPECT_EQ(place("FEHLER: ftp://a http:/b"), u"ftp://a http:/b"_s);
}

TEST_F(FailureDetail, place_finds_a_marker_across_every_cut_between_pieces) {
    for (int before = 65536 - 9; before <= 65536 + 1; ++before) {
        EXPECT_EQ(place(QByteArray(before, 'x') + "FEHLER: ende"), u"ende"_s) << before;
        EXPECT_EQ(place(QByteArray(before, 'x') + "FEHLER: ä🎬"), u"ä🎬"_s) << before;
    }
    EXPECT_EQ(place("FEHLER: " + QByteArray(65536 * 2, 'y')), QString(650, u'y'));
}

TEST_F(FailureDetail, place_says_nothing_about_a_log_that_is_not_utf8) {
    EXPECT_EQ(place("FEHLER: M\xfcnchen"), QString());
    EXPECT_EQ(place("\xff FEHLER: klar"), QString());
    EXPECT_EQ(place(QByteArray(70000, 'x') + "\xe4 FEHLER: klar"), QString());
    EXPECT_EQ(place("FEHLER: abgeschnitten \xe6\x9d"), QString());
    EXPECT_EQ(placeFailureDetail(folder_.filePath(u"none"_s)), QString());
    EXPECT_EQ(placeFailureDetail(folder_.path()), QString());
}

TEST_F(FailureDetail, place_reads_a_log_of_a_gibibyte_with_flat_memory) {
    const QString path = log("FEHLER: nicht dies\n");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    // A hole reads as NUL bytes, which are valid UTF-8 and cost no disk.
    ASSERT_TRUE(file.seek(qint64(1) << 30));
    file.write("\nFEHLER: dies hier\n");
    file.close();
    rusage before{};
    getrusage(RUSAGE_SELF, &before);
    EXPECT_EQ(placeFailureDetail(path), u"dies hier"_s);
    rusage after{};
    getrusage(RUSAGE_SELF, &after);
#ifdef __APPLE__
    const long unit = 1; // bytes
#else
    const long unit = 1024; // KiB
#endif
#if defined(__SANITIZE_ADDRESS__)
    const long most = 400L << 20; // the sanitizer keeps 256 MiB of what was freed
#else
    const long most = 16L << 20;
#endif
    EXPECT_LT((after.ru_maxrss - before.ru_maxrss) * unit, most);
}

TEST_F(FailureDetail, route_takes_the_first_line_after_the_last_marker) {
    EXPECT_EQ(route("FEHLER: eins\nFEHLER: zwei \nund drei\n"), u"zwei"_s);
    EXPECT_EQ(route("FEHLER:\nund drei\n"), QString());
    EXPECT_EQ(route("12:00 FEHLER:  jetzt nicht\n"), u"jetzt nicht"_s);
}

TEST_F(FailureDetail, route_takes_the_last_line_with_text_without_a_marker) {
    EXPECT_EQ(route("eins\n zwei \n \n\t\n"), u"zwei"_s);
    EXPECT_EQ(route(""), QString());
    EXPECT_EQ(route("\n \n"), QString());
    EXPECT_EQ(route(QByteArray(20000, 'x') + "\nzuletzt\n\n"), u"zuletzt"_s);
    EXPECT_EQ(route("erst\ndann"), u"dann"_s);
    EXPECT_EQ(route("FEHLER: lange her\n" + QByteArray("Kachel\n").repeated(3000) + "zuletzt\n"),
              u"zuletzt"_s);
}

TEST_F(FailureDetail, route_never_shows_a_line_whose_beginning_was_cut_off) {
    // The cut falls into the first line, and nothing but blanks follows it.
    EXPECT_EQ(route("FEHLER: " + QByteArray(20000, 'x') + "\n" + QByteArray(16000, ' ')),
              QString());
    EXPECT_EQ(route("FEHLER: " + QByteArray(20000, 'x') + "\nganz\n"), u"ganz"_s);
    // Without any line feed there is nothing to start after.
    EXPECT_EQ(route(QByteArray(20000, 'x')), QString(500, u'x'));
}

TEST_F(FailureDetail, route_reads_16384_bytes_whole) {
    const QByteArray rest = "\n" + QByteArray(16384 - 12, ' ') + "\n";
    const QByteArray exact = "FEHLER: ab" + rest;
    ASSERT_EQ(exact.size(), 16384);
    EXPECT_EQ(route(exact), u"ab"_s);
    EXPECT_EQ(route("x" + exact), QString());
}

TEST_F(FailureDetail, route_reads_latin1_where_utf8_fails) {
    EXPECT_EQ(route("FEHLER: M\xfcnchen"), u"München"_s);
    // One line without an end, cut in the middle of a character.
    const QByteArray endless = QByteArray("ä").repeated(10000) + 'x';
    EXPECT_EQ(route(endless), QString::fromLatin1(endless.right(16384)).left(500));
}

TEST_F(FailureDetail, route_reads_utf8_though_a_character_is_cut) {
    const QByteArray end = "\nFEHLER: Größe überschritten\n";
    const QByteArray umlauts = QByteArray("ä").repeated(9000);
    const QByteArray odd = (16384 - end.size()) % 2 == 0 ? "." : "";
    EXPECT_EQ(route("davor\n" + umlauts + odd + end), u"Größe überschritten"_s);
}

TEST_F(FailureDetail, route_masks_lower_case_addresses_only) {
    EXPECT_EQ(route("FEHLER: https://a.b/c HTTPS://d"), u"[Datendienst] HTTPS://d"_s);
}

TEST_F(FailureDetail, route_cuts_at_500_without_splitting_a_character) {
    const QByteArray begin = "FEHLER: " + QByteArray(499, 'x');
    EXPECT_EQ(route(begin + QByteArray(101, 'y')), QString(499, u'x') + u'y');
    EXPECT_EQ(route("FEHLER: " + QByteArray(500, 'x')), QString(500, u'x'));
    EXPECT_EQ(route(begin + "👨‍👩‍👧‍👦" + QByteArray(90, 'y')),
              QString(499, u'x') + u"👨‍👩‍👧‍👦"_s);
    EXPECT_EQ(route("FEHLER: " + QByteArray(489, 'x') + "👨‍👩‍👧‍👦" +
                    QByteArray(100, 'y')),
              QString(489, u'x') + u"👨‍👩‍👧‍👦"_s);
    // The toolkit sees a boundary in the middle of this girl; how much of her family it leaves to
    // her depends on its version.
    const QString family = route("FEHLER: " + QByteArray(493, 'x') +
                                 "कि\u200d👩‍👧‍👦" + QByteArray(90, 'y'));
    EXPECT_TRUE(family.isValidUtf16());
    EXPECT_TRUE(family.startsWith(QString(493, u'x') + u"कि\u200d👩‍👧"_s));
    EXPECT_FALSE(family.endsWith(u'y'));
    // And here in front of what joins the next one to it.
    const QString joined =
        route("FEHLER: " + QByteArray(496, 'x') + "👨अि\u200d👩\u200d👧" + QByteArray(90, 'y'));
    EXPECT_TRUE(joined.startsWith(QString(496, u'x') + u"👨अि\u200d"_s))
        << joined.sliced(490).toStdString();
    // What an address takes is counted as it is shown.
    EXPECT_EQ(route("FEHLER: " + QByteArray(490, 'x') + " https://a.example/b"),
              QString(490, u'x') + u" [Datendie"_s);
    EXPECT_EQ(route(begin + "x" + "👨‍👩‍👧‍👦"), QString(500, u'x'));
    EXPECT_EQ(route(begin + "e\xcc\x81" + QByteArray(99, 'y')), QString(499, u'x') + u"e\u0301"_s);
}

TEST_F(FailureDetail, place_shows_no_address_where_the_cut_halves_a_character) {
    QByteArray towers;
    for (int i = 0; i < 400; ++i)
        towers += "\xF0\x9F\x97\xBC";
    for (int tail = 40; tail < 44; ++tail) {
        const QString detail =
            place("FEHLER: " + towers + " https://x.example/k?y " + QByteArray(tail, 'z'));
        EXPECT_TRUE(detail.isValidUtf16()) << tail;
        EXPECT_FALSE(detail.contains(u"example"_s)) << tail;
        EXPECT_TRUE(detail.endsWith(u" [Datendienst] "_s + QString(tail, u'z'))) << tail;
    }
}
