#include "look/style/ToolTip.h"

#include "LookTest.h"
#include "look/style/Colours.h"
#include "look/text/Fonts.h"

#include <QHelpEvent>
#include <QLabel>
#include <QPushButton>
#include <QToolTip>

namespace {

class ToolTipTest : public LookTest {
protected:
    ToolTipTest() : owner(new QPushButton(&window)) { owner->setGeometry(300, 200, 100, 32); }

    void ask() {
        QHelpEvent help(QEvent::ToolTip, QPoint(5, 5), owner->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(owner, &help);
    }

    QWidget* tip(const QString& text) {
        owner->setToolTip(text);
        ask();
        return look::shownToolTip();
    }

    QPushButton* owner;
};

TEST_F(ToolTipTest, markup_is_shown_as_it_is_written) {
    show();
    const QString text = u"<b>x</b> &lt; <img src='/etc/passwd'>"_s;
    const QWidget* shown = tip(text);
    ASSERT_TRUE(shown);
    const int width = QFontMetrics(look::font(12)).horizontalAdvance(text);
    EXPECT_NEAR(shown->width(), width + 2 * (8 + 1), 2);
    EXPECT_EQ(shown->height(), 15 + 2 * (5 + 1));
}

TEST_F(ToolTipTest, label_of_the_toolkit_is_plain_too) {
    show();
    QToolTip::showText(QPoint(10, 10), u"<b>x</b>"_s, owner);
    const auto widgets = QApplication::topLevelWidgets();
    const auto isTip = [](const QWidget* widget) { return widget->inherits("QTipLabel"); };
    const auto found = std::find_if(widgets.begin(), widgets.end(), isTip);
    ASSERT_NE(found, widgets.end());
    EXPECT_EQ(qobject_cast<QLabel*>(*found)->textFormat(), Qt::PlainText);
    QToolTip::hideText();
}

TEST_F(ToolTipTest, long_text_wraps_at_360_and_keeps_its_line_breaks) {
    show();
    const QWidget* shown = tip(u"Stadt Ort Adresse "_s.repeated(20));
    EXPECT_LE(shown->width(), 360);
    EXPECT_GT(shown->width(), 300);
    EXPECT_GT(shown->height(), 5 * 15);
    shown = tip(u"a\nb\nc"_s);
    EXPECT_EQ(shown->height(), 3 * 15 + 2 * (5 + 1));
}

TEST_F(ToolTipTest, hundred_kilobytes_fit_the_screen_and_cost_what_is_seen) {
    show();
    const QString text = u"Straße <b>ﬁ</b> العربية "_s.repeated(5000);
    for (const QString& whole : {text.left(hundredKilobytes), QString(hundredKilobytes, u'i'),
                                 QString(hundredKilobytes, u'\n')}) {
        const double times = growth(whole, [&](const QString& given) { picture(*tip(given)); });
        EXPECT_LT(times, mostGrowth) << whole.left(8).toStdString();
        EXPECT_LE(look::shownToolTip()->height(), 24 * 15 + 2 * (5 + 1));
        const QRect room = window.screen()->availableGeometry();
        EXPECT_TRUE(room.contains(look::shownToolTip()->geometry()));
    }
}

TEST_F(ToolTipTest, lies_above_the_pointer_where_the_screen_ends) {
    show();
    const QRect room = window.screen()->availableGeometry();
    window.move(room.bottomRight() - QPoint(410, 240));
    const QWidget* shown = tip(u"Stadt Ort Adresse"_s);
    const int pointer = owner->mapToGlobal(QPoint(5, 5)).y();
    EXPECT_TRUE(room.contains(shown->geometry()));
    EXPECT_EQ(shown->geometry().bottom(), pointer - 4);
}

TEST_F(ToolTipTest, fill_and_outline_have_their_colours) {
    show();
    QWidget* shown = tip(u"Ort"_s);
    EXPECT_EQ(colourAt(*shown, QPoint(shown->width() / 2, 0)), look::colours::toolTipOutline);
    EXPECT_EQ(colourAt(*shown, QPoint(shown->width() / 2, 2)), look::colours::toolTip);
}

TEST_F(ToolTipTest, goes_when_the_pointer_leaves_or_something_is_pressed) {
    show();
    const auto leave = [&] {
        QEvent event(QEvent::Leave);
        QApplication::sendEvent(owner, &event);
    };
    const std::function<void()> ends[] = {
        leave, [&] { QTest::keyClick(owner, Qt::Key_A); },
        [&] { QTest::mouseClick(&window, Qt::LeftButton, {}, QPoint(5, 5)); },
        [] { look::hideToolTip(); }};
    for (const auto& end : ends) {
        ASSERT_TRUE(tip(u"Ort"_s));
        end();
        EXPECT_TRUE(QTest::qWaitFor([] { return !look::shownToolTip(); }));
    }
}

TEST_F(ToolTipTest, dies_with_its_owner) {
    show();
    ASSERT_TRUE(tip(u"Ort"_s));
    delete owner;
    EXPECT_FALSE(look::shownToolTip());
}

TEST_F(ToolTipTest, right_to_left_text_starts_at_the_right) {
    show();
    owner->setLayoutDirection(Qt::RightToLeft);
    QWidget* shown = tip(u"Ort\nEin viel längerer Satz"_s);
    const QRect first = ink(picture(*shown), QRect(6, 6, shown->width() - 12, 15));
    EXPECT_GT(first.left(), shown->width() / 2);
    EXPECT_LE(first.right(), shown->width() - 9);
}

} // namespace
