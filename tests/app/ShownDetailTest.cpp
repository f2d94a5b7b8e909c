// Where the signs, the digits and the parts of a place's detail really lie on the line, for places
// whose addresses read from the right, in a window that reads from the left (German, English) and
// in one that reads from the right (Arabic).

#include "app/PlaceRows.h"
#include "look/text/Direction.h"

#include <QFont>
#include <QGlyphRun>
#include <QGuiApplication>
#include <QTemporaryDir>
#include <QTextLayout>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace app;

namespace {

// From Morocco to Israel, from Iran, and some that have no letters from the right.
const QStringList details{
    u"مراكش, المغرب · 31.6258, -7.9891"_s,
    u"الدار البيضاء, المغرب · 33.5731, -7.5898"_s,
    u"Casablanca, الدار البيضاء, المغرب · 33.5731, -7.5898"_s,
    u"20000, الدار البيضاء, Casablanca, Maroc · 33.5945, -7.6187"_s,
    u"طنجة, المغرب · 35.7595, -5.8340"_s,
    u"العيون, الصحراء الغربية · 27.1536, -13.2033"_s,
    u"نواكشوط, موريتانيا · 18.0735, -15.9582"_s,
    u"Rue 42, نواكشوط, Mauritanie · 18.0858, -15.9785"_s,
    u"باماكو, Mali · 12.6392, -8.0029"_s,
    u"وهران, الجزائر · 35.6971, -0.6308"_s,
    u"الجزائر · 36.7538, 3.0588"_s,
    u"تونس, Tunisie · 36.8065, 10.1815"_s,
    u"طرابلس, ليبيا · 32.8872, 13.1913"_s,
    u"12, القاهرة, مصر · 30.0444, 31.2357"_s,
    u"تل أبيب · 32.0853, 34.7818"_s,
    u"תל אביב-יפו, ישראל · 32.0853, 34.7818"_s,
    u"ירושלים, القدس, Israel · 31.7683, 35.2137"_s,
    u"تهران, ایران · 35.6892, 51.3890"_s,
    u"بوينس آيرس, Argentina · -34.6037, -58.3816"_s,
    u"-34.6037, -58.3816"_s,
    u"Marrakesch, Marokko · 31.6258, -7.9891"_s,
};

// The left edge of each letter of a line, in the paragraph's direction.
class Laid {
public:
    Laid(const QString& text, Qt::LayoutDirection direction)
        : text_(text), layout_(text, QFont(u"Inter"_s, 11)) {
        QTextOption option;
        option.setTextDirection(direction);
        layout_.setTextOption(option);
        layout_.beginLayout();
        line_ = layout_.createLine();
        line_.setLineWidth(4000);
        layout_.endLayout();
    }

    qreal x(qsizetype index) const {
        const QList<QGlyphRun> runs = line_.glyphRuns(int(index), 1);
        return runs.isEmpty() || runs.first().positions().isEmpty()
                   ? qQNaN()
                   : runs.first().positions().first().x();
    }

    // Whether the letters of this stretch stand from left to right.
    bool standsInOrder(qsizetype begin, qsizetype length) const {
        for (qsizetype i = begin + 1; i < begin + length; ++i)
            if (!(x(i - 1) < x(i)))
                return false;
        return true;
    }

private:
    QString text_;
    QTextLayout layout_;
    QTextLine line_;
};

class ShownDetail : public testing::TestWithParam<Qt::LayoutDirection> {
protected:
    // As the list draws it: in the order of its own first strong letter.
    static Laid laid(const QString& detail) {
        const QString shown = shownDetail(detail, GetParam());
        return {shown, look::ownDirection(shown, GetParam())};
    }
};

} // namespace

TEST_P(ShownDetail, has_the_sign_before_its_number_and_the_latitude_before_the_longitude) {
    for (const QString& detail : details) {
        const QString shown = shownDetail(detail, GetParam());
        const QString coordinates =
            detail.mid(detail.lastIndexOf(u" · "_s) < 0 ? 0 : detail.lastIndexOf(u" · "_s) + 3);
        const qsizetype begin = shown.lastIndexOf(coordinates);
        ASSERT_GE(begin, 0) << "the coordinates are not in one piece: " << detail.toStdString();
        EXPECT_TRUE(laid(detail).standsInOrder(begin, coordinates.size())) << detail.toStdString();
        // A tooltip lays its text out in the window's direction, whatever the text's own is.
        EXPECT_TRUE(Laid(shown, GetParam()).standsInOrder(begin, coordinates.size()))
            << "tooltip: " << detail.toStdString();
    }
}

TEST_P(ShownDetail, has_its_parts_in_the_order_of_the_line) {
    for (const QString& detail : details) {
        const QString shown = shownDetail(detail, GetParam());
        const bool fromRight = look::ownDirection(shown, GetParam()) == Qt::RightToLeft;
        const Laid line = laid(detail);
        QStringList parts = detail.split(u" · "_s).first().split(u", "_s);
        if (!detail.contains(u" · "_s))
            continue;
        parts += detail.split(u" · "_s).last();
        qsizetype from = 0;
        qreal before = fromRight ? 1e9 : -1e9;
        for (const QString& part : parts) {
            const qsizetype at = shown.indexOf(part, from);
            ASSERT_GE(at, 0) << detail.toStdString();
            from = at + part.size();
            const qreal x = line.x(at);
            EXPECT_TRUE(fromRight ? x < before : x > before)
                << detail.toStdString() << ": " << part.toStdString();
            before = x;
        }
    }
}

TEST_P(ShownDetail, is_the_detail_to_the_letter_but_for_what_sets_it_apart) {
    for (const QString& detail : details) {
        QString shown = shownDetail(detail, GetParam());
        for (const char16_t mark : {u'\u2066', u'\u2068', u'\u2069'})
            shown.remove(mark);
        EXPECT_EQ(shown, detail);
    }
    EXPECT_EQ(shownDetail(details.last(), GetParam()), details.last())
        << "nothing of it reads from the right";
}

INSTANTIATE_TEST_SUITE_P(Window, ShownDetail, testing::Values(Qt::LeftToRight, Qt::RightToLeft));

int main(int count, char** values) {
    const QTemporaryDir runtime;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("XDG_RUNTIME_DIR", runtime.path().toUtf8());
    const QGuiApplication application(count, values);
    testing::InitGoogleTest(&count, values);
    return RUN_ALL_TESTS();
}
