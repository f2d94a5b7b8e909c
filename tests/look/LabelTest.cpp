#include "look/text/Label.h"

#include "LookTest.h"
#include "look/style/Colours.h"
#include "look/style/ToolTip.h"
#include "look/text/Fonts.h"

#include <QAccessible>
#include <QLineEdit>
#include <QMessageBox>
#include <QScopedPointer>

namespace {

using look::Label;

QString longText() {
    return u"Straße <b>ﬁ</b> العربية "_s.repeated(5000).left(hundredKilobytes);
}

class LabelTest : public LookTest {
protected:
    Label* make(const QString& text, int lines = 1) {
        auto* label = new Label(12, look::colours::secondary, &window);
        label->setMaximumLines(lines);
        label->setText(text);
        label->resize(200, lines * 15);
        return label;
    }
};

TEST_F(LabelTest, markup_is_shown_as_it_is_written) {
    const QFontMetrics metrics(look::font(12));
    for (const char* text :
         {"<b>fett</b>", "&lt;", "<img src=\"/etc/passwd\">", "a & b", "&amp;"}) {
        const QString written = QString::fromLatin1(text);
        for (const int lines : {1, 3}) {
            const Label* label = make(written, lines);
            EXPECT_NEAR(label->sizeHint().width(), metrics.horizontalAdvance(written), 1) << text;
        }
    }
}

TEST_F(LabelTest, every_label_of_the_toolkit_becomes_a_plain_one) {
    QMessageBox box(&window);
    box.setText(u"<b>x</b>"_s);
    box.setInformativeText(u"<b>y</b>"_s);
    auto* label = new QLabel(u"<b>z</b>"_s, &window);
    show();
    box.show();
    EXPECT_EQ(label->textFormat(), Qt::PlainText);
    const auto labels = box.findChildren<QLabel*>();
    ASSERT_GE(labels.size(), 2);
    for (const QLabel* part : labels)
        EXPECT_EQ(part->textFormat(), Qt::PlainText) << part->objectName().toStdString();
}

TEST_F(LabelTest, line_that_is_cut_keeps_its_beginning_and_ends_with_an_ellipsis) {
    const QString marks(1000, u'\u0301'); // above one letter: too many, and yet they fit
    for (const QString& text : {u"Ende einer sehr langen Straße"_s, QString(u"End"_s + marks)}) {
        const look::Line line = look::fitLine(text, look::font(12), 80);
        EXPECT_TRUE(line.isElided);
        EXPECT_TRUE(line.text.startsWith(u"End"_s)) << line.text.toStdString();
        EXPECT_TRUE(line.text.endsWith(u'\u2026')) << line.text.toStdString();
        EXPECT_LE(line.width, 80);
    }
}

TEST_F(LabelTest, ampersand_stays_with_and_without_a_buddy) {
    auto* first = new QLineEdit(&window);
    auto* field = new QLineEdit(&window);
    Label* label = make(u"Ort & Land"_s);
    label->setBuddy(field);
    show();
    first->setFocus();
    EXPECT_EQ(label->text(), u"Ort & Land"_s);
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(label);
    EXPECT_EQ(spoken->text(QAccessible::Name), u"Ort & Land"_s);
    QTest::keyClick(&window, Qt::Key_Space, Qt::AltModifier);
    EXPECT_FALSE(field->hasFocus());
}

TEST_F(LabelTest, text_that_is_elided_is_the_tooltip_and_no_other) {
    struct Row {
        const char* name;
        QString text;
        int lines;
        bool isElided;
    };
    const QString word = u"Stadt "_s;
    const Row rows[] = {
        {"short", word, 1, false},
        {"long", word.repeated(20), 1, true},
        {"two of three lines", word.repeated(10).trimmed(), 3, false},
        {"four of three lines", word.repeated(20), 3, true},
        {"three breaks", u"a\nb\nc\nd"_s, 3, true},
        {"two breaks", u"a\nb\nc"_s, 3, false},
        {"a word without an end", u"x"_s.repeated(400), 3, true},
    };
    show();
    for (const Row& row : rows) {
        Label* label = make(row.text, row.lines);
        label->show();
        EXPECT_EQ(label->isElided(), row.isElided) << row.name;
        EXPECT_EQ(showsToolTip(*label), row.isElided) << row.name;
        const QWidget* tip = look::shownToolTip();
        EXPECT_EQ(tip ? tip->accessibleName() : QString(), row.isElided ? row.text : QString());
        label->setToolTip(u"eigener"_s);
        ASSERT_TRUE(showsToolTip(*label)) << row.name;
        EXPECT_EQ(look::shownToolTip()->accessibleName(), u"eigener"_s);
    }
}

TEST_F(LabelTest, lines_stand_at_the_distance_of_their_size) {
    const struct {
        int pixels;
        int line;
    } rows[] = {{11, 14}, {12, 15}, {13, 16}, {26, 31}};
    for (const auto& row : rows) {
        Label label(row.pixels, look::colours::label);
        label.setText(u"x"_s);
        EXPECT_EQ(label.sizeHint().height(), row.line);
        label.setMaximumLines(3);
        label.setText(u"a\nb\nc\nd\ne"_s);
        EXPECT_EQ(label.heightForWidth(100), 3 * row.line);
    }
}

TEST_F(LabelTest, assistive_technology_gets_the_whole_text) {
    const QString text = longText();
    Label* label = make(text, 3);
    show();
    EXPECT_EQ(QAccessible::queryAccessibleInterface(label)->text(QAccessible::Name), text);
}

TEST_F(LabelTest, hundred_kilobytes_cost_no_more_than_what_is_seen) {
    show();
    for (const int lines : {1, 3}) {
        Label* label = make({}, lines);
        label->resize(776, 48);
        label->show();
        for (const QString& whole : {longText(), QString(hundredKilobytes, u'i')}) {
            const double times = growth(whole, [&](const QString& text) {
                label->setText(text);
                label->sizeHint();
                label->heightForWidth(776);
                picture(*label);
            });
            EXPECT_LT(times, mostGrowth) << lines << whole.left(8).toStdString();
            EXPECT_TRUE(label->isElided());
        }
    }
}

TEST_F(LabelTest, colour_changes_at_once_and_stays_when_disabled) {
    Label* label = make(u"████████"_s);
    label->setColour(look::colours::red);
    show();
    EXPECT_EQ(colourAt(*label, QPoint(20, 8)), look::colours::red);
    label->setEnabled(false);
    EXPECT_EQ(colourAt(*label, QPoint(20, 8)), look::colours::red);
}

TEST_F(LabelTest, text_begins_at_the_leading_edge) {
    Label* one = make(u"Ort"_s);
    Label* three = make(u"Ort"_s, 3);
    show();
    for (Label* label : {one, three}) {
        label->setLayoutDirection(Qt::LeftToRight);
        EXPECT_LT(ink(picture(*label), label->rect()).right(), 40);
        label->setLayoutDirection(Qt::RightToLeft);
        EXPECT_GT(ink(picture(*label), label->rect()).left(), 160);
    }
}

} // namespace
