#include "look/style/FocusRing.h"

#include "LookTest.h"
#include "look/controls/Button.h"
#include "look/controls/Field.h"
#include "look/controls/PlaceList.h"
#include "look/controls/PopUp.h"
#include "look/controls/Segments.h"
#include "look/style/Colours.h"

#include <QCheckBox>
#include <QStandardItemModel>

#include <memory>

namespace {

class FocusRingTest : public LookTest {
protected:
    FocusRingTest()
        : field(new look::Field(look::FieldKind::Search, &window)),
          button(new look::Button(look::ButtonKind::Push, u"Suchen"_s, &window)),
          popUp(new look::PopUp(102, &window)),
          segments(new look::Segments(look::SegmentsKind::Travel, {u"Auto"_s, u"Zug"_s}, &window)),
          list(new look::PlaceList(&window)) {
        field->setGeometry(20, 20, 200, 34);
        button->setGeometry(20, 80, 100, 32);
        popUp->move(20, 140);
        popUp->addItems({u"400 m"_s, u"800 m"_s});
        segments->adjustSize();
        segments->move(20, 200);
        segments->setSelectedSegment(0);
        list->setGeometry(20, 260, 300, 200);
        model.appendRow(new QStandardItem(u"Berlin"_s));
        list->setModel(&model);
    }

    QRgb colourOutside(const QWidget& control, int distance) {
        const QPoint middle = control.geometry().center();
        return colourAt(window, QPoint(middle.x(), control.geometry().top() - distance));
    }

    QStandardItemModel model;
    look::Field* field;
    look::Button* button;
    look::PopUp* popUp;
    look::Segments* segments;
    look::PlaceList* list;
};

TEST_F(FocusRingTest, tab_goes_around_with_the_ring) {
    show();
    field->setFocus();
    for (QWidget* next : std::initializer_list<QWidget*>{button, popUp, segments, list, field}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(look::ringedControl(), next) << next->metaObject()->className();
        EXPECT_EQ(colourOutside(*next, 1), look::colours::focusRingInner);
        EXPECT_EQ(colourOutside(*next, 2), look::colours::focusRing);
        EXPECT_EQ(colourOutside(*next, 3), look::colours::focusRing);
        EXPECT_EQ(colourOutside(*next, 4), look::colours::window);
        EXPECT_EQ(colourAt(window, next->geometry().topLeft()), look::colours::focusRing)
            << "the ring is as round as what it surrounds";
    }
}

TEST_F(FocusRingTest, mouse_brings_the_ring_to_fields_alone) {
    show();
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_TRUE(button->hasFocus());
    EXPECT_FALSE(look::ringedControl());
    QTest::mouseClick(segments->findChild<QAbstractButton*>(), Qt::LeftButton);
    EXPECT_FALSE(look::ringedControl());
    QTest::mouseClick(field, Qt::LeftButton);
    EXPECT_EQ(look::ringedControl(), field);
}

TEST_F(FocusRingTest, button_disabled_under_the_mouse_gives_no_ring_to_the_next) {
    QObject::connect(button, &QPushButton::clicked, button, [this] { button->setEnabled(false); });
    show();
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_FALSE(button->hasFocus());
    EXPECT_EQ(QApplication::focusWidget(), popUp);
    EXPECT_FALSE(look::ringedControl());
}

TEST_F(FocusRingTest, list_wears_it_only_while_nothing_is_selected) {
    show();
    list->setFocus();
    EXPECT_EQ(look::ringedControl(), list);
    list->setCurrentIndex(model.index(0, 0));
    EXPECT_FALSE(look::ringedControl());
    list->clearSelection();
    EXPECT_EQ(look::ringedControl(), list);
    list->setCurrentIndex(model.index(0, 0));
    model.clear();
    EXPECT_EQ(look::ringedControl(), list);
}

TEST_F(FocusRingTest, window_that_is_not_active_shows_none) {
    show();
    field->setFocus();
    ASSERT_EQ(look::ringedControl(), field);
    QWidget other;
    enter(other);
    EXPECT_FALSE(look::ringedControl());
    EXPECT_EQ(colourOutside(*field, 1), look::colours::window);
    show();
    EXPECT_EQ(look::ringedControl(), field);
}

TEST_F(FocusRingTest, keyboard_focus_comes_back_with_the_window) {
    show();
    field->setFocus();
    QTest::keyClick(field, Qt::Key_Tab);
    QWidget other;
    enter(other);
    show();
    EXPECT_EQ(look::ringedControl(), button);
}

TEST_F(FocusRingTest, follows_its_control_and_the_containers_around_it) {
    auto* pane = new QWidget(&window);
    pane->setGeometry(400, 100, 300, 300);
    auto* inner = new look::Field(look::FieldKind::Routing, pane);
    inner->setGeometry(0, 0, 100, 26);
    show();
    inner->setFocus();
    pane->move(450, 150);
    QTest::qWait(0);
    EXPECT_EQ(colourAt(window, QPoint(448, 163)), look::colours::focusRing);
    EXPECT_EQ(colourAt(window, QPoint(398, 113)), look::colours::window);
    inner->resize(150, 26);
    EXPECT_EQ(colourAt(window, QPoint(601, 163)), look::colours::focusRing);
    pane->hide();
    EXPECT_NE(look::ringedControl(), inner);
    EXPECT_EQ(colourAt(window, QPoint(600, 163)), look::colours::window);
}

TEST_F(FocusRingTest, stays_around_the_pop_up_while_its_menu_is_open) {
    show();
    field->setFocus();
    QTest::keyClick(field, Qt::Key_Tab);
    QTest::keyClick(button, Qt::Key_Tab);
    popUp->showPopup();
    EXPECT_EQ(look::ringedControl(), popUp);
    popUp->hidePopup();
    EXPECT_EQ(look::ringedControl(), popUp);
}

TEST_F(FocusRingTest, outlives_the_window_it_lay_in) {
    show();
    auto other = std::make_unique<QWidget>();
    auto* inner = new look::Field(look::FieldKind::Search, other.get());
    enter(*other);
    inner->setFocus();
    ASSERT_EQ(look::ringedControl(), inner);
    other.reset();
    EXPECT_FALSE(look::ringedControl());
    show();
    field->setFocus();
    EXPECT_EQ(look::ringedControl(), field);
}

TEST_F(FocusRingTest, goes_with_its_control) {
    show();
    for (QWidget* control : std::initializer_list<QWidget*>{segments, popUp, button}) {
        field->setFocus();
        while (look::ringedControl() != control)
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        delete control;
        EXPECT_NE(look::ringedControl(), control);
    }
    QTest::mouseClick(field, Qt::LeftButton);
    EXPECT_EQ(look::ringedControl(), field);
    field->setEnabled(false);
    EXPECT_NE(look::ringedControl(), field);
    EXPECT_EQ(colourOutside(*field, 1), look::colours::window);
}

TEST_F(FocusRingTest, lies_around_the_box_of_a_check_box) {
    auto* box = new QCheckBox(u"Karte"_s, &window);
    box->setGeometry(400, 100, 200, 16);
    show();
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        window.setLayoutDirection(direction);
        field->setFocus();
        QTest::keyClick(field, Qt::Key_Backtab);
        ASSERT_EQ(look::ringedControl(), box);
        const int left = direction == Qt::LeftToRight ? 400 : 600 - 14;
        EXPECT_EQ(colourAt(window, QPoint(left - 2, 108)), look::colours::focusRing);
        EXPECT_EQ(colourAt(window, QPoint(left + 14 + 1, 108)), look::colours::focusRing);
        EXPECT_EQ(colourAt(window, QPoint(500, 98)), look::colours::window);
    }
}

TEST_F(FocusRingTest, field_takes_the_rings_colour_as_its_border) {
    show();
    field->setFocus();
    EXPECT_EQ(colourAt(*field, QPoint(100, 0)), look::colours::focusRing);
    button->setFocus();
    EXPECT_EQ(colourAt(*field, QPoint(100, 0)), look::colours::border);
}

} // namespace
