// Places whose names come from someone who means harm: shown as they are written, and nothing else
// happens.

#include "SearchWindowTest.h"
#include "app/PlaceRows.h"
#include "look/style/ToolTip.h"

#ifdef __linux__
#include "platform/Descriptors.h"

#include <sys/inotify.h>
#include <unistd.h>
#endif

namespace {

struct Name {
    const char* what;
    QString name;
};
void PrintTo(const Name& name, std::ostream* out) {
    *out << name.what;
}

const QString half(1, QChar(0xd83c));

const Name names[] = {
    {"markup", u"<b>fett</b> &lt;i&gt;"_s},
    {"formats", u"%@ %1 %lu %s %n"_s},
    {"line_breaks", u"eins\nzwei\r\ndrei\u2028vier\u2029fünf"_s},
    {"control_characters", u"a\u0001b\u0007c\tc\u007fd\u009b"_s},
    {"nul", QString(u"a\0b"_s)},
    {"direction_characters", u"\u202eabc\u202c \u2067def\u2069"_s},
    {"right_to_left", u"القاهرة 12"_s},
    {"half_of_a_pair", half + u"x"_s},
    {"stacked_marks", u"Z"_s + QString(102400, QChar(0x0301))},
    {"long_without_width", QString(102400, QChar(0x200b)) + u"W"_s},
    {"long_emoji", QString(u"👩‍👩‍👧‍👦"_s).repeated(9000)},
    {"long_lines", QString(u"Zeile\n"_s).repeated(17000).trimmed()},
    {"long_right_to_left", QString(u"القاهرة "_s).repeated(12000).trimmed()},
};

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
};

INSTANTIATE_TEST_SUITE_P(Names, HostileNamesTest, testing::ValuesIn(names),
                         [](const auto& each) { return std::string(each.param.what); });

TEST_P(HostileNamesTest, is_kept_whole_and_moves_nothing) {
    start();
    const auto before = layout();
    const QSize size = window()->size();
    offer(GetParam().name);
    const QString name = GetParam().name;
    const QString detail =
        app::shownDetail(u"in "_s + name + u" · 52.0000, 13.0000"_s, Qt::LeftToRight);
    EXPECT_TRUE(rows().at(0) == QString(name + u'\n' + detail).replace(QChar::Null, u' '));
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
