#include "look/controls/Panel.h"

#include "LookTest.h"
#include "look/controls/Button.h"
#include "look/controls/Glyphs.h"
#include "look/controls/PopUp.h"
#include "look/style/Colours.h"
#include "look/text/Label.h"

#include <QAccessible>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace {

using look::Panel;
using look::PanelKind;

class PanelTest : public LookTest {
protected:
    PanelTest()
        : panel(PanelKind::Dialog, u"Sprache wählen"_s,
                u"Die Sprache wird nur auf diesem Gerät gespeichert."_s, &window),
          ends(&panel, &QDialog::finished) {}

    void open(Panel& opened) {
        show();
        opened.open();
        ASSERT_TRUE(QTest::qWaitFor([&] { return opened.isActiveWindow(); }));
    }

    void open() { open(panel); }

    Panel panel;
    QSignalSpy ends;
};

TEST_F(PanelTest, dialog_has_the_places_of_the_design) {
    auto* language = new look::PopUp(300);
    language->addItem(u"Deutsch"_s);
    panel.setAccessory(language);
    panel.setButtons(u"Übernehmen"_s, u"Abbrechen"_s);
    open();
    EXPECT_EQ(panel.size(), QSize(348, 233));
    EXPECT_EQ(panel.findChild<look::BuildingGlyph*>()->geometry(), QRect(152, 23, 44, 44));
    EXPECT_EQ(panel.heading()->y(), 79);
    EXPECT_EQ(panel.information()->y(), 100);
    EXPECT_EQ(language->geometry(), QRect(24, 131, 300, 28));
    EXPECT_EQ(panel.otherButton()->geometry(), QRect(24, 177, 145, 32));
    EXPECT_EQ(panel.prominentButton()->geometry(), QRect(179, 177, 145, 32));
    EXPECT_TRUE(panel.isModal());
    EXPECT_EQ(panel.windowModality(), Qt::WindowModal);
}

TEST_F(PanelTest, right_to_left_mirrors_the_buttons) {
    panel.setLayoutDirection(Qt::RightToLeft);
    panel.setButtons(u"Übernehmen"_s, u"Abbrechen"_s);
    open();
    EXPECT_EQ(panel.prominentButton()->x(), 24);
    EXPECT_EQ(panel.otherButton()->x(), 179);
}

TEST_F(PanelTest, return_presses_the_prominent_button_and_escape_the_other) {
    panel.setButtons(u"Übernehmen"_s, u"Abbrechen"_s);
    open();
    QTest::keyClick(&panel, Qt::Key_Return);
    open();
    QTest::keyClick(&panel, Qt::Key_Escape);
    ASSERT_EQ(ends.count(), 2);
    EXPECT_EQ(ends.at(0).at(0).toInt(), QDialog::Accepted);
    EXPECT_EQ(ends.at(1).at(0).toInt(), QDialog::Rejected);
}

TEST_F(PanelTest, return_in_the_accessory_presses_the_prominent_button) {
    auto* language = new look::PopUp(300);
    language->addItem(u"Deutsch"_s);
    panel.setAccessory(language);
    panel.setButtons(u"Übernehmen"_s, u"Abbrechen"_s);
    open();
    language->setFocus();
    QTest::keyClick(language, Qt::Key_Return);
    ASSERT_EQ(ends.count(), 1);
    EXPECT_EQ(ends.at(0).at(0).toInt(), QDialog::Accepted);
}

TEST_F(PanelTest, escape_and_return_press_the_only_button) {
    panel.setButtons(u"OK"_s);
    EXPECT_FALSE(panel.otherButton());
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return}) {
        open();
        EXPECT_EQ(panel.prominentButton()->width(), 300);
        ends.clear();
        QTest::keyClick(&panel, key);
        ASSERT_EQ(ends.count(), 1);
        EXPECT_EQ(ends.at(0).at(0).toInt(), QDialog::Accepted);
    }
}

TEST_F(PanelTest, texts_are_literal_and_long_ones_make_it_taller) {
    const QString foreign = u"<b>FEHLER</b> &amp; <img src=\"/etc/passwd\"> "_s;
    Panel alert(PanelKind::Alert, foreign, foreign.repeated(30).left(650), &window);
    alert.setButtons(u"OK"_s);
    open(alert);
    EXPECT_EQ(alert.width(), 348);
    EXPECT_GT(alert.height(), 300);
    EXPECT_LT(alert.height(), 600);
    EXPECT_FALSE(alert.information()->isElided());
    for (const QLabel* label : alert.findChildren<QLabel*>())
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
    EXPECT_EQ(alert.heading()->text(), foreign);
    EXPECT_TRUE(alert.rect().contains(alert.prominentButton()->geometry()));
}

TEST_F(PanelTest, text_without_an_end_is_elided_before_the_screen_ends) {
    Panel alert(PanelKind::Alert, u"Fehler"_s, u"Straße "_s.repeated(15000), &window);
    alert.setButtons(u"OK"_s);
    open(alert);
    EXPECT_LT(alert.height(), 600);
    EXPECT_TRUE(alert.information()->isElided());
}

TEST_F(PanelTest, assistive_technology_sees_a_dialog_or_an_alert_with_its_texts) {
    Panel alert(PanelKind::Alert, u"Fehler"_s, u"Zeit <b>"_s, &window);
    show();
    const auto spoken = [](QWidget& widget) {
        return QAccessible::queryAccessibleInterface(&widget);
    };
    EXPECT_EQ(spoken(panel)->role(), QAccessible::Dialog);
    EXPECT_EQ(spoken(alert)->role(), QAccessible::AlertMessage);
    EXPECT_EQ(spoken(alert)->text(QAccessible::Name), u"Fehler"_s);
    EXPECT_EQ(spoken(alert)->text(QAccessible::Description), u"Zeit <b>"_s);
}

TEST_F(PanelTest, ground_and_outline_have_their_colours) {
    panel.setButtons(u"OK"_s);
    open();
    EXPECT_EQ(colourAt(panel, QPoint(174, 0)), look::colours::panelOutline);
    EXPECT_EQ(colourAt(panel, QPoint(10, 100)), look::colours::panel);
    EXPECT_EQ(colourAt(panel, QPoint(40, panel.height() - 27)), look::colours::prominent);
}

} // namespace
