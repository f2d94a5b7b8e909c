#include "look/accessibility/AccessibleField.h"

#include "LookTest.h"
#include "look/controls/Field.h"

#include <QAccessible>

namespace {

class AccessibleFieldTest : public LookTest {
protected:
    AccessibleFieldTest() : field(new look::Field(look::FieldKind::Search, &window)) {
        field->setGeometry(20, 20, 300, 34);
        field->setText(u"Berlin"_s);
    }

    QAccessibleInterface* spoken() { return QAccessible::queryAccessibleInterface(field); }
    QAccessibleTextInterface* text() { return spoken()->textInterface(); }
    QAccessibleEditableTextInterface* editable() { return spoken()->editableTextInterface(); }

    look::Field* field;
};

TEST_F(AccessibleFieldTest, text_is_read_in_one_piece_to_its_last_letter) {
    EXPECT_EQ(spoken()->role(), QAccessible::EditableText);
    EXPECT_EQ(spoken()->text(QAccessible::Value), u"Berlin"_s);
    EXPECT_EQ(text()->characterCount(), 6);
    EXPECT_EQ(text()->text(0, 6), u"Berlin"_s);
    EXPECT_EQ(text()->text(2, 4), u"rl"_s);
    EXPECT_EQ(text()->text(4, 2), QString());
    for (int offset = 0; offset < 6; ++offset) {
        int begin = -1;
        int end = -1;
        EXPECT_EQ(text()->attributes(offset, &begin, &end), QString());
        EXPECT_EQ(begin, 0);
        EXPECT_EQ(end, 6);
    }
}

TEST_F(AccessibleFieldTest, selection_and_cursor_are_told_and_set) {
    int begin = -1;
    int end = -1;
    EXPECT_EQ(text()->selectionCount(), 0);
    text()->selection(0, &begin, &end);
    EXPECT_EQ(begin, end);
    text()->addSelection(1, 4);
    EXPECT_EQ(field->selectedText(), u"erl"_s);
    EXPECT_EQ(text()->selectionCount(), 1);
    text()->selection(0, &begin, &end);
    EXPECT_EQ(begin, 1);
    EXPECT_EQ(end, 4);
    text()->removeSelection(0);
    EXPECT_FALSE(field->hasSelectedText());
    text()->setCursorPosition(2);
    EXPECT_EQ(field->cursorPosition(), 2);
    EXPECT_EQ(text()->cursorPosition(), 2);
}

TEST_F(AccessibleFieldTest, letter_lies_where_the_cursor_stands_before_it) {
    show();
    for (const QString& written : {u"Berlin"_s, u"برلين"_s}) {
        field->setText(written);
        for (int cursor : {0, 3}) {
            field->setCursorPosition(cursor);
            QRect all;
            for (int offset = 0; offset < written.size(); ++offset)
                all |= text()->characterRect(offset);
            EXPECT_TRUE(spoken()->rect().contains(all));
            for (int offset = 0; offset < written.size(); ++offset) {
                const QPoint middle = text()->characterRect(offset).center();
                const int found = text()->offsetAtPoint(middle);
                EXPECT_TRUE(found == offset || found == offset + 1) << offset << " is " << found;
            }
        }
    }
    EXPECT_EQ(text()->characterRect(-1), QRect());
    EXPECT_EQ(text()->characterRect(6), QRect());
    EXPECT_EQ(text()->offsetAtPoint(spoken()->rect().topLeft() - QPoint(5, 5)), -1);
}

TEST_F(AccessibleFieldTest, text_is_written_only_where_somebody_could_type_it) {
    editable()->insertText(6, u" Mitte"_s);
    EXPECT_EQ(field->text(), u"Berlin Mitte"_s);
    editable()->replaceText(7, 12, u"Ost"_s);
    EXPECT_EQ(field->text(), u"Berlin Ost"_s);
    editable()->deleteText(6, 10);
    EXPECT_EQ(field->text(), u"Berlin"_s);
    EXPECT_TRUE(spoken()->state().editable);

    field->setReadOnly(true);
    EXPECT_TRUE(spoken()->state().readOnly);
    EXPECT_FALSE(spoken()->state().editable);
    spoken()->setText(QAccessible::Value, u"Leipzig"_s);
    field->setReadOnly(false);
    field->setEnabled(false);
    editable()->deleteText(0, 6);
    EXPECT_EQ(field->text(), u"Berlin"_s);
    field->setEnabled(true);
    spoken()->setText(QAccessible::Value, u"Leipzig"_s);
    EXPECT_EQ(field->text(), u"Leipzig"_s);
}

TEST_F(AccessibleFieldTest, places_that_the_text_has_not_are_left_alone) {
    editable()->replaceText(-1, 3, u"x"_s);
    editable()->deleteText(4, 2);
    editable()->insertText(-1, u"x"_s);
    editable()->insertText(7, u"x"_s);
    EXPECT_EQ(field->text(), u"Berlin"_s);
    editable()->deleteText(5, 70);
    EXPECT_EQ(field->text(), u"Berli"_s);
}

} // namespace
