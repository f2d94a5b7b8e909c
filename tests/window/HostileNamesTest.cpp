// Places whose names come from someone who means harm: shown as they are written, and nothing else
// happens.

#include "SearchWindowTest.h"
#include "app/PlaceRows.h"
#include "look/style/ToolTip.h"
#include "look/text/Fonts.h"

#include <cmath>
#include <ctime>
#include <map>

#ifdef __linux__
#include "platform/Descriptors.h"

#include <sys/inotify.h>
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;
using namespace app;

namespace {

struct Name {
    const char* what;
    QString name;
    QString drawn; // what can be seen of it on one line; empty: does not fit
};
void PrintTo(const Name& name, std::ostream* out) {
    *out << name.what;
}

const QString half(1, QChar(0xd83c));

const Name hostile[] = {
    {"markup", u"<b>fett</b> &lt;i&gt;"_s, u"<b>fett</b> &lt;i&gt;"_s},
    {"formats", u"%@ %1 %lu %s %n"_s, u"%@ %1 %lu %s %n"_s},
    {"ampersands", u"A & B && C"_s, u"A & B && C"_s},
    {"line_breaks", u"eins\nzwei\r\ndrei\u2028vier\u2029fünf"_s, u"eins zwei  drei vier fünf"_s},
    {"control_characters", u"a\u0001b\u0007c\tc\u007fd\u009b"_s, u"a b c c d"_s},
    {"direction_characters", u"\u202eabc\u202c \u2067def\u2069"_s,
     u"\u202eabc\u202c \u2067def\u2069"_s},
    {"right_to_left", u"القاهرة 12"_s, u"القاهرة 12"_s},
    {"emoji", u"🎬👩‍👩‍👧‍👦🏳️‍🌈"_s,
     u"🎬👩‍👩‍👧‍👦🏳️‍🌈"_s},
    {"half_of_a_pair", half + u"x"_s, QString()},
};

const Name veryLong[] = {
    {"stacked_marks", u"Z"_s + QString(102400, QChar(0x0301)), QString()},
    {"long", QString(102400, u'W'), QString()},
    {"long_without_width", QString(102400, QChar(0x200b)) + u"W"_s, QString()},
    {"long_emoji", QString(u"👩‍👩‍👧‍👦"_s).repeated(9000), QString()},
    {"long_lines", QString(u"Zeile\n"_s).repeated(17000).trimmed(), QString()},
    {"long_right_to_left", QString(u"القاهرة "_s).repeated(12000).trimmed(), QString()},
};

// The columns of a picture that differ from its first pixel: where something is drawn.
int inkWidth(const QImage& picture) {
    int first = picture.width();
    int last = -1;
    for (int x = 0; x < picture.width(); ++x) {
        for (int y = 0; y < picture.height(); ++y) {
            if (picture.pixel(x, y) != picture.pixel(0, 0)) {
                first = std::min(first, x);
                last = x;
            }
        }
    }
    return last - first + 1;
}

double workOfThisThread() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return 1e3 * double(time.tv_sec) + 1e-6 * double(time.tv_nsec);
}

class HostileNamesTest : public SearchWindowTest, public testing::WithParamInterface<Name> {
protected:
    // Offers a place of this name, whose city is called the same, and searches it.
    void offer(QString name) {
        // The JSON that is written here has no half of a pair, but the geocoder's may have one.
        name.replace(half, u"HALF"_s);
        QJsonObject behaviour = withBody(
            answer({feature(name, {{"city"_L1, QString(u"in "_s + name)}}), feature(u"Ulm"_s)}));
        const QString body = behaviour.value("body"_L1).toString();
        behaviour["body"_L1] = QString(body).replace(u"HALF"_s, u"\\ud83c"_s);
        geocoder.behave(behaviour);
        searchResults(u"Ort"_s);
    }

    QMap<QString, QRect> layout() const {
        QMap<QString, QRect> places;
        for (const QWidget* each : window()->centralWidget()->findChildren<QWidget*>())
            if (each->isVisible() && each->objectName() != "placeholder"_L1)
                places[each->objectName()] = place(each);
        return places;
    }

    QRect row(int index) const {
        return list("table")->visualRect(list("table")->model()->index(index, 0));
    }

    // The name's line of the first row.
    QImage nameLine() {
        const QRect area = row(0);
        return list("table")
            ->viewport()
            ->grab(QRect(area.left() + 8, area.top() + 4, area.width() - 16, 22))
            .toImage();
    }
};

using LongNamesTest = HostileNamesTest;

std::string nameOf(const testing::TestParamInfo<Name>& each) {
    return each.param.what;
}

INSTANTIATE_TEST_SUITE_P(Names, HostileNamesTest, testing::ValuesIn(hostile), nameOf);
INSTANTIATE_TEST_SUITE_P(LongNames, HostileNamesTest, testing::ValuesIn(veryLong), nameOf);
INSTANTIATE_TEST_SUITE_P(Names, LongNamesTest, testing::ValuesIn(veryLong), nameOf);

TEST_P(HostileNamesTest, is_kept_whole_and_moves_nothing) {
    start();
    const auto before = layout();
    const QSize size = window()->size();
    offer(GetParam().name);
    const QString name = GetParam().name;
    const QString detail =
        app::shownDetail(u"in "_s + name + u" · 52.0000, 13.0000"_s, Qt::LeftToRight);
    EXPECT_TRUE(rows().at(0) == name + u'\n' + detail);
    EXPECT_TRUE(rows().at(1) == u"Ulm\n52.0000, 13.0000"_s);
    EXPECT_TRUE(toolTipAt(list("table")->viewport(), row(0).center()) == detail);
    EXPECT_LE(look::shownToolTip()->width(), 360);
    EXPECT_LE(look::shownToolTip()->height(), window()->screen()->availableGeometry().height());
    clickRow(0);
    settle();
    EXPECT_EQ(layout(), before);
    EXPECT_EQ(window()->size(), size);
    EXPECT_EQ(row(1).top() - row(0).top(), 50);
    EXPECT_LE(row(0).width(), list("table")->width());
}

TEST_P(HostileNamesTest, is_drawn_literally_on_one_line) {
    start();
    offer(GetParam().name);
    const int width = inkWidth(nameLine());
    if (GetParam().drawn.isEmpty()) {
        EXPECT_LE(width, row(0).width() - 16);
        return;
    }
    const QFontMetricsF metrics(look::font(14, QFont::Medium));
    // The picture ends where the last letter does, the metrics where the next one would begin.
    EXPECT_NEAR(width, metrics.horizontalAdvance(GetParam().drawn), 4);
}

// What cannot be seen is not worked on: a name costs what its beginning costs.
TEST_P(LongNamesTest, cost_no_more_than_their_beginnings) {
    const QString beginning = GetParam().name.left(4000);
    ASSERT_LT(20 * beginning.size(), GetParam().name.size());
    start();
    // The first picture of a script loads its fonts: that is not the list's doing.
    offer(beginning.left(40));
    window()->grab();
    toolTipAt(list("table")->viewport(), row(0).center());

    const struct {
        const char* what;
        std::function<void(int)> act;
    } acts[] = {
        {"painting", [&](int) { list("table")->viewport()->update(); }},
        {"hovering",
         [&](int turn) { QTest::mouseMove(list("table")->viewport(), row(turn % 2).center()); }},
        {"the tooltip", [&](int) { toolTipAt(list("table")->viewport(), row(0).center()); }},
        {"choosing", [&](int turn) { clickRow(turn % 2); }},
        {"resizing",
         [&](int turn) { window()->resize(window()->size() + QSize(turn % 2 ? -40 : 40, 0)); }},
    };
    // The work of each, in thousandths of a second that this thread really worked; the least of
    // some.
    const auto costs = [&](const QString& name) {
        offer(name);
        settle();
        std::map<std::string, double> found;
        for (const auto& [what, act] : acts) {
            found[what] = HUGE_VAL;
            for (int turn = 0; turn < 4; ++turn) {
                const double before = workOfThisThread();
                act(turn);
                settle();
                found[what] = std::min(found[what], workOfThisThread() - before);
            }
        }
        return found;
    };
    const auto least = costs(beginning);
    for (const auto& [what, cost] : costs(GetParam().name))
        EXPECT_LT(cost, 4 * least.at(what) + 5) << what << ", and its beginning " << least.at(what);
}

#ifdef __linux__
TEST_F(HostileNamesTest, markup_loads_no_file) {
    const QString path = temporaryFolder().absoluteFilePath(u"picture.png"_s);
    QImage picture(40, 40, QImage::Format_RGB32);
    picture.fill(Qt::magenta);
    ASSERT_TRUE(picture.save(path));
    const platform::UniqueFd watch(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    ASSERT_GE(inotify_add_watch(watch.get(), qPrintable(path), IN_OPEN | IN_ACCESS), 0);
    const auto wasRead = [&] {
        char event[4096];
        return read(watch.get(), event, sizeof event) > 0;
    };
    EXPECT_TRUE(QFile(path).open(QIODevice::ReadOnly));
    ASSERT_TRUE(wasRead()) << "reading is noticed";

    start();
    for (const QString& address : {path, QString(u"file://"_s + path)}) {
        offer(u"<html><img src=\"%1\" width=40 height=40><body background='%1'>"_s.arg(address));
        window()->grab();
        clickRow(0);
        EXPECT_NE(toolTipAt(list("table")->viewport(), row(0).center()), QString());
        look::shownToolTip()->grab();
        settle();
    }
    EXPECT_FALSE(wasRead());
    EXPECT_TRUE(QFile::remove(path));
}
#endif

} // namespace
