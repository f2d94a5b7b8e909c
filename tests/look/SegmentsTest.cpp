#include "look/controls/Segments.h"

#include "LookTest.h"
#include "look/style/Colours.h"
#include "look/style/ToolTip.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QLineEdit>
#include <QSignalSpy>

namespace {

using look::Segments;
using look::SegmentsKind;

class SegmentsTest : public LookTest {
protected:
    SegmentsTest()
        : segments(new Segments(SegmentsKind::Travel, {u"Auto"_s, u"<&>"_s, u"Flug"_s}, &window)),
          changes(segments, &Segments::selectionChanged) {
        segments->setSelectedSegment(0);
        segments->adjustSize();
        segments->move(20, 20);
    }

    QAbstractButton* segment(int index) {
        return segments->findChildren<QAbstractButton*>().at(index);
    }

    Segments* segments;
    QSignalSpy changes;
};

TEST_F(SegmentsTest, click_selects_and_says_so_once) {
    show();
    QTest::mouseClick(segment(2), Qt::LeftButton);
    EXPECT_EQ(segments->selectedSegment(), 2);
    EXPECT_FALSE(segment(0)->isChecked());
    QTest::mouseClick(segment(2), Qt::LeftButton);
    EXPECT_TRUE(segment(2)->isChecked());
    ASSERT_EQ(changes.count(), 1);
    EXPECT_EQ(changes.at(0).at(0).toInt(), 2);
}

TEST_F(SegmentsTest, program_selects_without_a_signal) {
    for (const int index : {1, -1, 7, 2})
        segments->setSelectedSegment(index);
    EXPECT_EQ(segments->selectedSegment(), 2);
    segments->setSelectedSegment(7);
    EXPECT_EQ(segments->selectedSegment(), -1);
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(SegmentsTest, arrow_keys_move_the_selection_but_not_beyond_the_ends) {
    struct Row {
        Qt::LayoutDirection direction;
        Qt::Key key;
        int from;
        int to;
    };
    const Row rows[] = {
        {Qt::LeftToRight, Qt::Key_Right, 0, 1}, {Qt::LeftToRight, Qt::Key_Left, 1, 0},
        {Qt::LeftToRight, Qt::Key_Left, 0, 0},  {Qt::LeftToRight, Qt::Key_Right, 2, 2},
        {Qt::LeftToRight, Qt::Key_Down, 1, 2},  {Qt::LeftToRight, Qt::Key_Up, 1, 0},
        {Qt::RightToLeft, Qt::Key_Left, 0, 1},  {Qt::RightToLeft, Qt::Key_Right, 1, 0},
        {Qt::RightToLeft, Qt::Key_Right, 0, 0}, {Qt::RightToLeft, Qt::Key_Down, 1, 2},
    };
    show();
    for (const Row& row : rows) {
        window.setLayoutDirection(row.direction);
        segments->setSelectedSegment(row.from);
        segments->setFocus();
        changes.clear();
        QTest::keyClick(QApplication::focusWidget(), row.key);
        EXPECT_EQ(segments->selectedSegment(), row.to) << row.key << " from " << row.from;
        EXPECT_EQ(changes.count(), row.from == row.to ? 0 : 1);
        EXPECT_EQ(QApplication::focusWidget(), segment(row.to));
    }
}

TEST_F(SegmentsTest, tab_reaches_the_selected_segment_and_leaves_the_group) {
    auto* next = new QLineEdit(&window);
    segments->setSelectedSegment(1);
    show();
    next->setFocus();
    QTest::keyClick(next, Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), segment(1));
    QTest::keyClick(segment(1), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget(), next);
    segments->setSelectedSegment(0);
    QTest::keyClick(next, Qt::Key_Tab, Qt::ShiftModifier);
    EXPECT_EQ(QApplication::focusWidget(), segment(0));
}

TEST_F(SegmentsTest, keyboard_enters_at_the_first_segment_where_none_is_selected) {
    segments->setSelectedSegment(-1);
    show();
    segments->setFocus();
    EXPECT_EQ(QApplication::focusWidget(), segment(0));
    QTest::keyClick(segment(0), Qt::Key_Space);
    EXPECT_EQ(segments->selectedSegment(), 0);
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(SegmentsTest, disabled_segments_take_neither_click_nor_key) {
    segments->setEnabled(false);
    show();
    QTest::mouseClick(segment(1), Qt::LeftButton);
    QTest::keyClick(segment(0), Qt::Key_Right);
    EXPECT_EQ(segments->selectedSegment(), 0);
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(SegmentsTest, assistive_technology_sees_a_group_of_radio_buttons) {
    segments->setAccessibleName(u"Reiseart"_s);
    show();
    QAccessibleInterface* group = QAccessible::queryAccessibleInterface(segments);
    ASSERT_TRUE(group);
    EXPECT_EQ(group->role(), QAccessible::Grouping);
    EXPECT_EQ(group->text(QAccessible::Name), u"Reiseart"_s);
    ASSERT_EQ(group->childCount(), 3);
    QAccessibleInterface* second = group->child(1);
    EXPECT_EQ(second->role(), QAccessible::RadioButton);
    EXPECT_EQ(second->text(QAccessible::Name), u"<&>"_s);
    EXPECT_TRUE(group->child(0)->state().checked);
    EXPECT_FALSE(second->state().checked);
    second->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(segments->selectedSegment(), 1);
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(SegmentsTest, widths_are_equal_natural_and_grow_with_longer_titles) {
    EXPECT_EQ(segments->size(), QSize(142, 24));
    Segments mode(SegmentsKind::Mode, {u"Ortskarte"_s, u"Route"_s});
    EXPECT_EQ(mode.sizeHint(), QSize(204, 30));
    Segments wide(SegmentsKind::Mode, {u"Ortskarte"_s, u"Eine sehr viel längere Route"_s});
    wide.adjustSize();
    EXPECT_GT(wide.width(), 204);
    wide.show();
    const auto buttons = wide.findChildren<QAbstractButton*>();
    EXPECT_EQ(buttons.at(0)->width(), buttons.at(1)->width());
}

TEST_F(SegmentsTest, title_that_does_not_fit_is_the_tooltip_unless_they_all_have_one) {
    show();
    EXPECT_FALSE(showsToolTip(*segment(0)));
    segments->resize(60, 24);
    ASSERT_TRUE(showsToolTip(*segment(0)));
    EXPECT_EQ(look::shownToolTip()->accessibleName(), u"Auto"_s);
    segments->setToolTip(u"Reiseart"_s);
    ASSERT_TRUE(showsToolTip(*segment(0)));
    EXPECT_EQ(look::shownToolTip()->accessibleName(), u"Reiseart"_s);
}

TEST_F(SegmentsTest, states_have_their_own_colours) {
    segments->setSelectedSegment(0);
    show();
    const QPoint inFirst(30, 4);
    const QPoint inSecond(60, 4);
    const QPoint beforeSecond(47, 12);
    const QPoint onDivider(93, 12);
    const QPoint onLine(60, 0);
    QTest::mouseMove(&window, QPoint(400, 400));
    EXPECT_EQ(colourAt(*segments, inFirst), look::colours::pill);
    EXPECT_EQ(colourAt(*segments, inSecond), look::colours::track);
    EXPECT_EQ(colourAt(*segments, onDivider), look::colours::divider);
    EXPECT_EQ(colourAt(*segments, onLine), look::colours::trackLine);
    QTest::mouseMove(segment(1));
    EXPECT_EQ(colourAt(*segments, inSecond), look::colours::segmentHover);
    QTest::mousePress(segment(1), Qt::LeftButton);
    EXPECT_EQ(colourAt(*segments, inSecond), look::colours::segmentPressed);
    QTest::mouseRelease(segment(1), Qt::LeftButton);
    EXPECT_EQ(colourAt(*segments, inSecond), look::colours::pill);
    EXPECT_EQ(colourAt(*segments, onDivider), look::colours::pill);
    EXPECT_EQ(colourAt(*segments, beforeSecond), look::colours::track);
    segments->setSelectedSegment(2);
    QTest::mouseMove(&window, QPoint(400, 400));
    EXPECT_EQ(colourAt(*segments, beforeSecond), look::colours::divider);
    EXPECT_EQ(colourAt(*segments, onDivider), look::colours::track);
    segments->setSelectedSegment(1);
    segments->setEnabled(false);
    EXPECT_EQ(colourAt(*segments, inSecond), look::colours::pillDisabled);
    EXPECT_EQ(colourAt(*segments, inFirst), look::colours::trackDisabled);
    EXPECT_EQ(colourAt(*segments, onLine), look::colours::trackLineDisabled);
}

} // namespace
