#include "look/controls/Panel.h"

#include "LookTest.h"
#include "look/controls/Button.h"
#include "look/controls/Field.h"
#include "look/controls/Glyphs.h"
#include "look/controls/PopUp.h"
#include "look/style/Colours.h"
#include "look/style/FocusRing.h"
#include "look/text/Fonts.h"
#include "look/text/Label.h"

#include <QAccessible>
#include <QBoxLayout>
#include <QShortcut>
#include <QSignalSpy>
#include <QStackedWidget>

#include <utility>

namespace {

using look::Panel;
using look::PanelKind;

// A window with one field, which the panel covers.
class PanelTest : public LookTest {
protected:
    PanelTest() {
        auto* row = new QHBoxLayout(&window);
        row->setContentsMargins({});
        row->addWidget(pages);
        pages->addWidget(content);
        (new QHBoxLayout(content))->addWidget(field);
        pages->setMinimumSize(780, 730);
    }

    void SetUp() override {
        LookTest::SetUp();
        show();
        field->setFocus();
        ASSERT_TRUE(field->hasFocus());
    }

    Panel* make(PanelKind kind = PanelKind::Dialog, const QString& heading = u"Sprache wählen"_s,
                const QString& text = u"Die Sprache wird nur auf diesem Gerät gespeichert."_s) {
        return new Panel(kind, heading, text, pages);
    }
    Panel* openQuestion() {
        auto* panel = make();
        panel->setButtons(u"Übernehmen"_s, u"Abbrechen"_s);
        panel->open();
        return panel;
    }
    Panel* openAlert(const QString& heading = u"Fehler"_s, const QString& text = u"Zeit <b>"_s) {
        auto* panel = make(PanelKind::Alert, heading, text);
        panel->setButtons(u"OK"_s);
        panel->open();
        return panel;
    }

    // To the window, which hands a key to what has the focus.
    void press(Qt::Key key) { QTest::keyClick(window.windowHandle(), key); }

    QStackedWidget* pages = new QStackedWidget;
    QWidget* content = new QWidget;
    look::Field* field = new look::Field(look::FieldKind::Search);
};

TEST_F(PanelTest, dialog_has_the_places_of_the_design) {
    Panel* panel = make();
    auto* language = new look::PopUp(300);
    language->addItem(u"Deutsch"_s);
    panel->setAccessory(language);
    panel->setButtons(u"Übernehmen"_s, u"Abbrechen"_s);
    panel->open();
    EXPECT_EQ(panel->size(), QSize(348, 233));
    EXPECT_EQ(panel->findChild<look::BuildingGlyph*>()->geometry(), QRect(152, 23, 44, 44));
    EXPECT_EQ(panel->heading()->y(), 79);
    EXPECT_EQ(panel->information()->y(), 100);
    EXPECT_EQ(language->geometry(), QRect(24, 131, 300, 28));
    EXPECT_EQ(panel->otherButton()->geometry(), QRect(24, 177, 145, 32));
    EXPECT_EQ(panel->prominentButton()->geometry(), QRect(179, 177, 145, 32));
    EXPECT_TRUE(language->hasFocus());
}

TEST_F(PanelTest, right_to_left_mirrors_the_buttons) {
    Panel* panel = make();
    panel->setLayoutDirection(Qt::RightToLeft);
    panel->setButtons(u"Übernehmen"_s, u"Abbrechen"_s);
    panel->open();
    EXPECT_EQ(panel->prominentButton()->x(), 24);
    EXPECT_EQ(panel->otherButton()->x(), 179);
}

TEST_F(PanelTest, it_lies_in_the_middle_of_its_window_also_when_that_is_resized) {
    Panel* panel = openAlert();
    EXPECT_EQ(panel->window(), &window) << "a part of it";
    for (const QSize size : {QSize(780, 730), QSize(1000, 801), QSize(780, 730)}) {
        window.resize(size);
        QCoreApplication::processEvents();
        const QRect place(panel->mapTo(&window, QPoint()), panel->size());
        EXPECT_LE((place.center() - window.rect().center()).manhattanLength(), 1);
    }
}

TEST_F(PanelTest, the_page_below_shows_under_black_and_grows_with_the_window) {
    const QImage before = picture(window);
    const QColor ground(before.pixel(2, 2));
    const QColor inField(before.pixel(30, window.height() / 2));
    ASSERT_NE(ground, inField);
    openAlert();
    for (const QSize size : {window.size(), QSize(1000, 800)}) {
        window.resize(size);
        QCoreApplication::processEvents();
        const QImage under = picture(window);
        // The field is as wide as the page.
        const int middle = size.height() / 2;
        for (const auto& [place, was] : {std::pair(QPoint(2, 2), ground),
                                         {QPoint(30, middle), inField},
                                         {QPoint(size.width() - 30, middle), inField}}) {
            const QColor is(under.pixel(place));
            EXPECT_NEAR(is.red(), was.red() * 0.7, 1) << place.x();
            EXPECT_NEAR(is.blue(), was.blue() * 0.7, 1) << place.x();
        }
    }
}

TEST_F(PanelTest, what_has_the_keyboard_first_tells_what_the_panel_says) {
    auto* panel = new Panel(PanelKind::Dialog, u"Frage"_s, u"Nur hier."_s, pages);
    auto* accessory = new QLineEdit;
    panel->setAccessory(accessory);
    panel->setButtons(u"OK"_s);
    panel->open();
    EXPECT_EQ(QAccessible::queryAccessibleInterface(accessory)->text(QAccessible::Description),
              u"Nur hier."_s);
}

TEST_F(PanelTest, nothing_reaches_the_page_below) {
    bool isPressed = false;
    new QShortcut(Qt::Key_F5, content, [&] { isPressed = true; });
    press(Qt::Key_F5);
    ASSERT_TRUE(std::exchange(isPressed, false));
    Panel* panel = openQuestion();
    press(Qt::Key_F5);
    press(Qt::Key_X);
    QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, QPoint(30, 30));
    EXPECT_FALSE(isPressed);
    EXPECT_EQ(field->text(), QString());
    EXPECT_TRUE(panel->prominentButton()->hasFocus()) << "the click takes nothing away";
    EXPECT_EQ(window.childAt(field->mapTo(&window, QPoint(5, 5))), panel->parentWidget());
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(field);
    EXPECT_TRUE(spoken->state().invisible);
    panel->reject();
    EXPECT_FALSE(spoken->state().invisible);
}

TEST_F(PanelTest, the_keyboard_goes_round_in_it_and_returns_to_where_it_was) {
    Panel* panel = openQuestion();
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
        EXPECT_TRUE(panel->prominentButton()->hasFocus());
        press(key);
        EXPECT_TRUE(panel->otherButton()->hasFocus());
        press(key);
    }
    EXPECT_TRUE(panel->prominentButton()->hasFocus());
    EXPECT_EQ(look::ringedControl(), panel->prominentButton());
    press(Qt::Key_Escape);
    EXPECT_TRUE(field->hasFocus());
    EXPECT_EQ(look::ringedControl(), field);
}

TEST_F(PanelTest, the_keyboard_is_still_there_when_the_window_is_active_again) {
    Panel* panel = openQuestion();
    QWidget other;
    enter(other);
    show();
    EXPECT_TRUE(panel->prominentButton()->hasFocus());
    press(Qt::Key_Escape);
    EXPECT_TRUE(field->hasFocus());
}

TEST_F(PanelTest, one_that_opens_in_a_hidden_window_is_there_when_it_shows) {
    window.hide();
    const Panel* panel = openAlert();
    window.show();
    EXPECT_TRUE(panel->isVisible());
    // This screen does not make the window the active one again.
    EXPECT_EQ(window.focusWidget(), panel->prominentButton());
}

TEST_F(PanelTest, it_takes_the_keyboard_also_where_nothing_had_it) {
    field->clearFocus();
    ASSERT_EQ(window.focusWidget(), nullptr);
    EXPECT_TRUE(openQuestion()->prominentButton()->hasFocus());
}

TEST_F(PanelTest, return_presses_the_prominent_button_and_escape_the_other) {
    const struct {
        Qt::Key key;
        QDialog::DialogCode answer;
    } keys[] = {{Qt::Key_Return, QDialog::Accepted}, {Qt::Key_Escape, QDialog::Rejected}};
    for (const auto& [key, answer] : keys) {
        const QSignalSpy ends(openQuestion(), &QDialog::finished);
        press(key);
        ASSERT_EQ(ends.count(), 1);
        EXPECT_EQ(ends.at(0).at(0).toInt(), answer);
    }
}

TEST_F(PanelTest, return_in_the_accessory_presses_the_prominent_button) {
    Panel* panel = make();
    panel->setAccessory(new look::PopUp(300));
    panel->setButtons(u"Übernehmen"_s, u"Abbrechen"_s);
    const QSignalSpy ends(panel, &QDialog::accepted);
    panel->open();
    press(Qt::Key_Return);
    EXPECT_EQ(ends.count(), 1);
}

TEST_F(PanelTest, escape_and_return_press_the_only_button) {
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return}) {
        const Panel* panel = openAlert();
        EXPECT_FALSE(panel->otherButton());
        EXPECT_EQ(panel->prominentButton()->width(), 300);
        const QSignalSpy ends(panel, &QDialog::accepted);
        press(key);
        EXPECT_EQ(ends.count(), 1);
    }
}

TEST_F(PanelTest, it_goes_with_its_answer) {
    const QPointer<Panel> panel = openAlert();
    press(Qt::Key_Return);
    EXPECT_TRUE(content->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(panel);
    EXPECT_EQ(pages->count(), 1);
}

TEST_F(PanelTest, the_answer_may_open_the_next_one) {
    Panel* question = openQuestion();
    Panel* next = nullptr;
    QObject::connect(question, &QDialog::accepted, &window, [&] { next = openAlert(); });
    press(Qt::Key_Return);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ASSERT_TRUE(next && next->isVisible());
    EXPECT_TRUE(next->prominentButton()->hasFocus());
    press(Qt::Key_Return);
    EXPECT_TRUE(field->hasFocus());
}

TEST_F(PanelTest, texts_are_literal_and_long_ones_make_it_taller) {
    const QString foreign = u"<b>FEHLER</b> &amp; <img src=\"/etc/passwd\"> "_s;
    const Panel* alert = openAlert(foreign, foreign.repeated(30).left(650));
    EXPECT_EQ(alert->width(), 348);
    EXPECT_GT(alert->height(), 300);
    EXPECT_LT(alert->height(), 600);
    EXPECT_FALSE(alert->information()->isElided());
    for (const QLabel* label : alert->findChildren<QLabel*>())
        EXPECT_EQ(label->textFormat(), Qt::PlainText);
    EXPECT_EQ(alert->heading()->text(), foreign);
    EXPECT_TRUE(alert->rect().contains(alert->prominentButton()->geometry()));
}

TEST_F(PanelTest, texts_without_an_end_are_elided_before_the_window_ends) {
    for (const QString& text : {u"Straße "_s.repeated(15000), u"Zeile\n"_s.repeated(15000)}) {
        Panel* alert = openAlert(text, text);
        EXPECT_TRUE(alert->information()->isElided());
        EXPECT_EQ(alert->information()->height(), 24 * look::lineHeight(12)) << "no wall of text";
        EXPECT_TRUE(window.rect()
                        .marginsRemoved({12, 12, 12, 12})
                        .contains(QRect(alert->mapTo(&window, QPoint()), alert->size())));
        EXPECT_TRUE(alert->rect().contains(alert->prominentButton()->geometry()));
        EXPECT_EQ(window.minimumSizeHint(), QSize(780, 730)) << "the window need not grow for it";
        alert->accept();
    }
}

TEST_F(PanelTest, assistive_technology_sees_a_dialog_or_an_alert_with_its_texts_once) {
    const auto expect = [this](Panel* panel, QAccessible::Role role, const QStringList& texts) {
        QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(panel);
        EXPECT_EQ(spoken->role(), role);
        EXPECT_TRUE(spoken->state().modal);
        EXPECT_EQ(spoken->text(QAccessible::Name), texts.first());
        EXPECT_EQ(spoken->text(QAccessible::Description), QString()) << "a label says it";
        QStringList said;
        for (int i = 0; i < spoken->childCount(); ++i)
            if (spoken->child(i)->role() == QAccessible::StaticText)
                said += spoken->child(i)->text(QAccessible::Name);
        EXPECT_EQ(said, texts);
        const QAccessibleInterface* above = spoken->parent();
        while (above && above->object() != &window)
            above = above->parent();
        EXPECT_TRUE(above) << "it lies in its window";
        panel->accept();
    };
    expect(openQuestion(), QAccessible::Dialog,
           {u"Sprache wählen"_s, u"Die Sprache wird nur auf diesem Gerät gespeichert."_s});
    expect(openAlert(), QAccessible::AlertMessage, {u"Fehler"_s, u"Zeit <b>"_s});
}

TEST_F(PanelTest, ground_and_outline_have_their_colours) {
    Panel& panel = *openAlert();
    EXPECT_EQ(colourAt(panel, QPoint(174, 0)), look::colours::panelOutline);
    EXPECT_EQ(colourAt(panel, QPoint(10, 100)), look::colours::panel);
    EXPECT_EQ(colourAt(panel, QPoint(40, panel.height() - 27)), look::colours::prominent);
}

} // namespace
