#include "look/accessibility/AccessiblePlaceList.h"

#include "LookTest.h"
#include "look/controls/PlaceList.h"

#include <QAccessible>
#include <QScrollBar>

namespace {

constexpr int count = 8;

class AccessiblePlaceListTest : public LookTest {
protected:
    AccessiblePlaceListTest() : list(new look::PlaceList(&window)) {
        list->setGeometry(20, 20, 400, 250);
        list->setModel(&model);
        model.setRows(QList<look::PlaceRow>(count, {u"Berlin"_s, u"Deutschland"_s}));
    }

    QAccessibleInterface* spoken() { return QAccessible::queryAccessibleInterface(list); }
    QAccessibleTableInterface* table() { return spoken()->tableInterface(); }
    QAccessibleInterface* row(int number) { return spoken()->child(number); }

    look::PlaceListModel model;
    look::PlaceList* list;
};

TEST_F(AccessiblePlaceListTest, rows_out_of_view_are_there_too) {
    show();
    ASSERT_GT(list->verticalScrollBar()->maximum(), 0);
    EXPECT_EQ(spoken()->role(), QAccessible::List);
    EXPECT_EQ(spoken()->childCount(), count);
    EXPECT_EQ(table()->rowCount(), count);
    for (int number = 0; number < count; ++number) {
        ASSERT_TRUE(row(number)->isValid());
        EXPECT_EQ(row(number)->role(), QAccessible::ListItem);
        EXPECT_FALSE(row(number)->state().invisible) << number;
        EXPECT_EQ(row(number)->text(QAccessible::Name), u"Berlin\nDeutschland"_s);
        EXPECT_EQ(row(number)->parent(), spoken());
        EXPECT_EQ(spoken()->indexOfChild(row(number)), number);
        EXPECT_EQ(row(number)->tableCellInterface()->rowIndex(), number);
        EXPECT_EQ(table()->cellAt(number, 0), row(number));
    }
    EXPECT_EQ(row(count), nullptr);
    EXPECT_EQ(row(-1), nullptr);
    EXPECT_EQ(spoken()->indexOfChild(spoken()), -1);
    list->hide();
    EXPECT_TRUE(row(0)->state().invisible);
}

TEST_F(AccessiblePlaceListTest, row_lies_where_it_is_seen) {
    show();
    const QRect first = row(0)->rect();
    EXPECT_TRUE(spoken()->rect().contains(first));
    EXPECT_EQ(row(1)->rect(), first.translated(0, 50));
    EXPECT_EQ(spoken()->childAt(first.center().x(), first.center().y() + 50), row(1));
    EXPECT_EQ(spoken()->childAt(first.center().x(), first.top() - 50), nullptr);
    list->verticalScrollBar()->setValue(50);
    EXPECT_EQ(row(1)->rect(), first);
}

TEST_F(AccessiblePlaceListTest, row_is_chosen_from_outside) {
    show();
    EXPECT_TRUE(table()->selectRow(6));
    EXPECT_EQ(list->currentIndex().row(), 6);
    EXPECT_EQ(table()->selectedRows(), QList<int>({6}));
    EXPECT_EQ(table()->selectedCells(), QList<QAccessibleInterface*>({row(6)}));
    EXPECT_TRUE(row(6)->state().selected);
    EXPECT_TRUE(list->viewport()->rect().contains(list->visualRect(list->currentIndex())));

    row(2)->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(table()->selectedRows(), QList<int>({2})) << "one at most";
    row(2)->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(table()->selectedRowCount(), 0);
    EXPECT_FALSE(table()->selectRow(count));
    EXPECT_TRUE(table()->selectRow(3));
    EXPECT_TRUE(table()->unselectRow(3));
    EXPECT_EQ(table()->selectedRowCount(), 0);
}

TEST_F(AccessiblePlaceListTest, nothing_is_chosen_in_a_list_that_cannot_be_used) {
    show();
    ASSERT_TRUE(table()->selectRow(0));
    list->setEnabled(false);
    EXPECT_TRUE(row(1)->state().disabled);
    EXPECT_FALSE(table()->selectRow(1));
    EXPECT_FALSE(table()->unselectRow(0));
    EXPECT_EQ(table()->selectedRows(), QList<int>({0}));
}

TEST_F(AccessiblePlaceListTest, chosen_row_has_the_focus_of_its_list) {
    show();
    list->setCurrentIndex(model.index(4, 0));
    list->clearFocus();
    EXPECT_EQ(spoken()->focusChild(), nullptr);
    EXPECT_FALSE(row(4)->state().focused);
    list->setFocus();
    EXPECT_EQ(spoken()->focusChild(), row(4));
    EXPECT_TRUE(row(4)->state().focused);
    EXPECT_FALSE(row(3)->state().focused);
}

// What a reader has kept of a row is not taken for another one's.
TEST_F(AccessiblePlaceListTest, other_rows_are_other_objects) {
    show();
    const QAccessible::Id first = QAccessible::uniqueId(row(0));
    const QAccessible::Id last = QAccessible::uniqueId(row(count - 1));
    model.setRows({{u"Leipzig"_s, u"Sachsen"_s}});
    EXPECT_FALSE(QAccessible::accessibleInterface(last) &&
                 QAccessible::accessibleInterface(last)->isValid());
    QAccessibleTableModelChangeEvent reset(list, QAccessibleTableModelChangeEvent::ModelReset);
    table()->modelChange(&reset);
    EXPECT_EQ(QAccessible::accessibleInterface(first), nullptr);
    EXPECT_EQ(row(0)->text(QAccessible::Name), u"Leipzig\nSachsen"_s);
    EXPECT_NE(QAccessible::uniqueId(row(0)), first);
    const QAccessible::Id remaining = QAccessible::uniqueId(row(0));
    delete list;
    EXPECT_EQ(QAccessible::accessibleInterface(remaining), nullptr);
}

TEST_F(AccessiblePlaceListTest, list_without_a_model_is_empty) {
    list->setModel(nullptr);
    EXPECT_EQ(spoken()->childCount(), 0);
    EXPECT_FALSE(table()->isRowSelected(0));
    EXPECT_FALSE(table()->selectRow(0));
}

} // namespace
