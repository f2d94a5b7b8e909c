// The controls that the style draws: sizes, and the colour of every state.

#include "LookTest.h"
#include "look/controls/Button.h"
#include "look/controls/Field.h"
#include "look/controls/PopUp.h"
#include "look/controls/Spinner.h"
#include "look/style/Colours.h"
#include "look/style/ToolTip.h"
#include "look/text/Fonts.h"
#include "look/text/LiteralText.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QCheckBox>
#include <QMenu>
#include <QPainter>
#include <QWheelEvent>

#include <array>

namespace {

using look::Button;
using look::ButtonKind;

class ControlsTest : public LookTest {
protected:
    // Where the pointer touches nothing.
    void leave() { QTest::mouseMove(&window, QPoint(790, 590)); }

    // Where the colour first stands in the widget's row y, or -1.
    static int firstOf(QRgb colour, QWidget& widget, int y) {
        const QImage image = picture(widget);
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) == colour)
                return x;
        return -1;
    }
};

struct FaceRow {
    QRgb fill;
    QRgb top;
    QRgb text;
};

void expectFace(QWidget& control, const FaceRow& face, const char* state) {
    const QImage image = control.grab().toImage();
    EXPECT_EQ(image.pixel(10, control.height() - 3), face.fill) << state;
    EXPECT_EQ(image.pixel(control.width() / 2, 0), face.top) << state;
    EXPECT_EQ(image.pixel(control.width() / 2, control.height() - 1), face.fill) << state;
    EXPECT_EQ(image.pixel(30, control.height() / 2), face.text) << state;
}

// The colour of a text of full blocks: most of nine pixels, for where one block meets the next,
// some fonts leave a seam.
QRgb colourOfBlocks(const QImage& image, int x, int y) {
    std::array<QRgb, 9> row;
    for (int i = 0; i < 9; ++i)
        row[size_t(i)] = image.pixel(x + i, y);
    std::sort(row.begin(), row.end());
    return row[4];
}

TEST_F(ControlsTest, buttons_have_the_colours_of_their_states) {
    using namespace look::colours;
    struct Faces {
        FaceRow normal;
        FaceRow hover;
        FaceRow pressed;
        FaceRow disabled;
    };
    const Faces plain{{push, pushTop, label},
                      {pushHover, pushHoverTop, label},
                      {pushPressed, pushPressedTop, label},
                      {pushDisabled, pushDisabledTop, disabledText}};
    const Faces blue{{prominent, prominentTop, white},
                     {prominentHover, prominentHover, white},
                     {prominentPressed, prominentPressedTop, white},
                     {prominentDisabled, prominentDisabledTop, prominentDisabledText}};
    for (const ButtonKind kind : {ButtonKind::Push, ButtonKind::Small, ButtonKind::Prominent}) {
        const Faces& row = kind == ButtonKind::Prominent ? blue : plain;
        auto* button = new Button(kind, u"████████████"_s, &window);
        button->resize(button->sizeHint());
        button->move(20, 20);
        show();
        button->show();
        leave();
        expectFace(*button, row.normal, "normal");
        QTest::mouseMove(button);
        expectFace(*button, row.hover, "hover");
        QTest::mousePress(button, Qt::LeftButton);
        expectFace(*button, row.pressed, "pressed");
        QTest::mouseRelease(button, Qt::LeftButton);
        leave();
        button->setEnabled(false);
        expectFace(*button, row.disabled, "disabled");
        button->setEnabled(true);
        QWidget other;
        enter(other);
        expectFace(*button, plain.normal, "inactive");
        delete button;
    }
}

TEST_F(ControlsTest, buttons_have_their_sizes) {
    const auto width = [](const QFont& font, const char* text) {
        return int(std::ceil(QFontMetricsF(font).horizontalAdvance(QLatin1String(text))));
    };
    const QFont medium = look::font(13, QFont::Medium);
    EXPECT_EQ(Button(ButtonKind::Push, u"Sprache"_s).sizeHint(),
              QSize(width(medium, "Sprache") + 30, 32));
    EXPECT_EQ(Button(ButtonKind::Prominent, u"Ort"_s).sizeHint(), QSize(148, 32));
    EXPECT_EQ(Button(ButtonKind::Prominent, u"Unterwegs zur Route"_s).sizeHint(),
              QSize(width(medium, "Unterwegs zur Route") + 38, 32));
    EXPECT_EQ(Button(ButtonKind::Small, u"Station"_s).sizeHint(),
              QSize(width(look::font(11, QFont::Medium), "Station") + 22, 24));
}

TEST_F(ControlsTest, button_title_is_literal_on_screen_and_spoken) {
    const QString title = u"Suchen & <b>Finden</b>"_s;
    auto* button = new Button(ButtonKind::Push, title, &window);
    show();
    const int width = QFontMetrics(button->font()).horizontalAdvance(title);
    EXPECT_NEAR(button->sizeHint().width(), width + 30, 1);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(button)->text(QAccessible::Name), title);
    bool isClicked = false;
    QObject::connect(button, &QPushButton::clicked, button, [&] { isClicked = true; });
    QTest::keyClick(&window, Qt::Key_Space, Qt::AltModifier);
    EXPECT_FALSE(isClicked);
}

TEST_F(ControlsTest, shortcut_presses_a_button_at_once_while_it_is_enabled) {
    auto* button = new Button(ButtonKind::Push, u"Abbrechen"_s, &window);
    button->setShortcut(Qt::Key_Escape);
    show();
    int presses = 0;
    QObject::connect(button, &QPushButton::clicked, button, [&] { ++presses; });
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_EQ(presses, 1) << "not a moment later";
    button->setEnabled(false);
    QTest::keyClick(&window, Qt::Key_Escape);
    button->setEnabled(true);
    button->hide();
    QTest::keyClick(&window, Qt::Key_Escape);
    EXPECT_EQ(presses, 1);
}

TEST_F(ControlsTest, title_that_outgrows_a_fixed_width_is_elided_and_is_the_tooltip) {
    auto* button = new Button(ButtonKind::Push, u"Suchen"_s, &window);
    button->setGlyph(look::ButtonGlyph::Magnifier);
    button->setFixedWidth(108);
    show();
    EXPECT_FALSE(button->isElided());
    EXPECT_FALSE(showsToolTip(*button));
    button->setTitle(u"Durchsuchen der ganzen Welt"_s);
    EXPECT_EQ(button->width(), 108);
    EXPECT_TRUE(button->isElided());
    ASSERT_TRUE(showsToolTip(*button));
    EXPECT_EQ(look::shownToolTip()->accessibleName(), button->title());
    EXPECT_TRUE(QRect(4, 0, 100, 32).contains(ink(picture(*button), QRect(4, 4, 100, 24))));
    EXPECT_EQ(button->accessibleDescription(), button->title());
    button->setFixedWidth(400);
    EXPECT_EQ(button->accessibleDescription(), QString()) << "all of it is shown";
}

TEST_F(ControlsTest, magnifier_stands_before_the_title_in_its_colour) {
    auto* button = new Button(ButtonKind::Push, u"████"_s, &window);
    button->setGlyph(look::ButtonGlyph::Magnifier);
    button->resize(button->sizeHint());
    show();
    leave();
    EXPECT_NEAR(firstOf(look::colours::label, *button, 15), 15 + 2, 1);
    button->setEnabled(false);
    EXPECT_NEAR(firstOf(look::colours::disabledText, *button, 15), 15 + 2, 1);
    button->setEnabled(true);
    button->setLayoutDirection(Qt::RightToLeft);
    EXPECT_EQ(firstOf(look::colours::label, *button, 15), 15)
        << "the title comes first from the left";
}

TEST_F(ControlsTest, pop_ups_have_the_colours_of_their_states) {
    using namespace look::colours;
    auto* popUp = new look::PopUp(102, &window);
    popUp->addItem(u"██████"_s);
    popUp->move(200, 200);
    show();
    leave();
    EXPECT_EQ(popUp->size(), QSize(102, 28));
    expectFace(*popUp, {push, pushTop, label}, "normal");
    QTest::mouseMove(popUp);
    expectFace(*popUp, {pushHover, pushHoverTop, label}, "hover");
    popUp->showPopup();
    expectFace(*popUp, {pushPressed, pushPressedTop, label}, "open");
    popUp->hidePopup();
    leave();
    popUp->setEnabled(false);
    expectFace(*popUp, {pushDisabled, pushDisabledTop, disabledText}, "disabled");
}

TEST_F(ControlsTest, menu_of_a_pop_up_lies_over_it_in_rows_of_24) {
    auto* popUp = new look::PopUp(218, &window);
    popUp->addItems({u"A & B"_s, u"<b>C</b>"_s, u"D"_s});
    popUp->setCurrentIndex(1);
    popUp->move(200, 200);
    show();
    popUp->showPopup();
    QWidget* menu = popUp->view()->window();
    EXPECT_EQ(menu->size(), QSize(218, 3 * 24 + 10));
    QImage image(menu->size(), QImage::Format_RGB32);
    image.fill(look::colours::window);
    QPainter painter(&image);
    menu->render(&painter, QPoint(), QRegion(), QWidget::DrawChildren);
    painter.end();
    EXPECT_EQ(image.pixel(0, 0), look::colours::window);
    EXPECT_EQ(image.pixel(100, 0), look::colours::panelOutline);
    EXPECT_EQ(image.pixel(100, 3), look::colours::panel);
    EXPECT_EQ(image.pixel(100, 5 + 24 + 2), look::colours::selection);
    EXPECT_EQ(image.pixel(4, 5 + 36), look::colours::panel);
    EXPECT_EQ(image.pixel(5, 5 + 36), look::colours::selection);
    EXPECT_NEAR(ink(image, QRect(8, 8, 200, 16)).left(), 31, 2) << "text of an unchosen row";
    EXPECT_NEAR(ink(image, QRect(8, 33, 200, 16)).left(), 13 + 2, 2) << "tick of the chosen row";
    popUp->hidePopup();
}

TEST_F(ControlsTest, menu_grows_with_its_longest_entry) {
    auto* popUp = new look::PopUp(102, &window);
    popUp->addItem(u"ein ziemlich langer Eintrag"_s);
    show();
    popUp->showPopup();
    const int text = QFontMetrics(popUp->font()).horizontalAdvance(popUp->itemText(0));
    EXPECT_GE(popUp->view()->window()->width(), text + 31 + 5);
    popUp->hidePopup();
}

TEST_F(ControlsTest, pop_up_elides_its_entry_and_ignores_the_wheel) {
    auto* popUp = new look::PopUp(102, &window);
    popUp->addItems({u"ein ziemlich langer Eintrag"_s, u"kurz"_s});
    show();
    EXPECT_TRUE(popUp->isElided());
    ASSERT_TRUE(showsToolTip(*popUp));
    EXPECT_EQ(look::shownToolTip()->accessibleName(), popUp->currentText());
    QWheelEvent wheel(QPointF(5, 5), popUp->mapToGlobal(QPointF(5, 5)), QPoint(0, -120),
                      QPoint(0, -120), Qt::NoButton, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(popUp, &wheel);
    EXPECT_EQ(popUp->currentIndex(), 0);
    popUp->setFocus();
    QTest::keyClick(popUp, Qt::Key_Down);
    EXPECT_EQ(popUp->currentIndex(), 1);
    EXPECT_FALSE(showsToolTip(*popUp));
}

TEST_F(ControlsTest, fields_have_their_sizes_and_the_colours_of_their_states) {
    using namespace look::colours;
    const struct {
        look::FieldKind kind;
        int height;
        int letters;
    } kinds[] = {{look::FieldKind::Search, 34, 15},
                 {look::FieldKind::Service, 24, 11},
                 {look::FieldKind::Routing, 26, 11}};
    show();
    for (const auto& kind : kinds) {
        look::Field field(kind.kind, &window);
        field.setText(u"████████"_s);
        field.resize(200, 30);
        field.show();
        EXPECT_EQ(field.height(), kind.height);
        EXPECT_EQ(field.font().pixelSize(), kind.letters);
        const int middle = kind.height / 2;
        const auto expect = [&](QRgb fill, QRgb line, QRgb text) {
            const QImage image = picture(field);
            EXPECT_EQ(image.pixel(150, middle), fill);
            EXPECT_EQ(image.pixel(150, 0), line);
            EXPECT_EQ(colourOfBlocks(image, 30, middle), text);
        };
        expect(well, border, labelOnWell);
        field.setReadOnly(true);
        expect(fieldReadOnly, borderReadOnly, secondary);
        field.setEnabled(false);
        expect(fieldDisabled, borderDisabled, disabledText);
        field.setReadOnly(false);
        field.setEnabled(true);
        field.setFocus();
        expect(well, focusRing, labelOnWell);
    }
}

TEST_F(ControlsTest, selected_text_is_grey_in_a_window_that_is_not_active) {
    look::Field field(look::FieldKind::Search, &window);
    field.setText(u"████    █"_s);
    field.resize(200, 34);
    show();
    field.setFocus();
    field.selectAll();
    const int text = 16;
    const int gap = 11 + QFontMetrics(field.font()).horizontalAdvance(u"████  "_s);
    const auto expect = [&](QRgb fill, QRgb letters) {
        const QImage image = picture(field);
        EXPECT_EQ(image.pixel(gap, 17), fill);
        EXPECT_EQ(colourOfBlocks(image, text, 17), letters);
    };
    expect(look::colours::selection, look::colours::white);
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    expect(look::colours::selectionUnfocused, look::colours::label);
    field.setReadOnly(true);
    expect(look::colours::selectionUnfocused, look::colours::label);
}

TEST_F(ControlsTest, field_shows_a_blue_cursor_where_the_text_goes_on) {
    auto* field = new look::Field(look::FieldKind::Search, &window);
    field->resize(200, 34);
    show();
    field->setFocus();
    const auto cursorAt = [&] { return firstOf(look::colours::textCursor, *field, 17); };
    EXPECT_EQ(cursorAt(), 11);
    QTest::keyClicks(field, u"Berlin"_s);
    const int after = 11 + QFontMetrics(field->font()).horizontalAdvance(u"Berlin"_s);
    EXPECT_NEAR(cursorAt(), after, 1);
    QTest::keyClick(field, Qt::Key_Home);
    EXPECT_EQ(cursorAt(), 11);
    field->setReadOnly(true);
    EXPECT_EQ(cursorAt(), -1) << "nothing can be typed";
    field->setReadOnly(false);
    QTest::keyClick(field, Qt::Key_End);
    EXPECT_NEAR(cursorAt(), after, 1);
    field->clearFocus();
    EXPECT_EQ(cursorAt(), -1);
}

TEST_F(ControlsTest, field_text_lies_at_the_leading_edge_in_its_own_order) {
    auto* field = new look::Field(look::FieldKind::Service, &window);
    field->resize(300, 24);
    show();
    const QRect inside(4, 4, 292, 16);
    for (const char16_t* text : {u"https://a.de/", u"برلين"}) {
        field->setText(QString::fromUtf16(text));
        field->setLayoutDirection(Qt::LeftToRight);
        EXPECT_NEAR(ink(picture(*field), inside).left(), 11, 2);
        field->setLayoutDirection(Qt::RightToLeft);
        EXPECT_NEAR(ink(picture(*field), inside).right(), 300 - 11, 2);
    }
}

TEST_F(ControlsTest, placeholder_has_its_colours) {
    auto* field = new look::Field(look::FieldKind::Search, &window);
    field->setPlaceholderText(u"████████"_s);
    field->resize(200, 34);
    show();
    EXPECT_EQ(colourOfBlocks(picture(*field), 40, 17), look::colours::tertiaryOnWell);
    field->setEnabled(false);
    EXPECT_EQ(colourOfBlocks(picture(*field), 40, 17), look::colours::disabledText);
}

TEST_F(ControlsTest, check_box_has_the_colours_of_its_states) {
    using namespace look::colours;
    auto* box = new QCheckBox(u"████████"_s, &window);
    box->setFont(look::font(12));
    box->setChecked(true);
    box->resize(box->sizeHint().width(), 16);
    show();
    const auto expect = [&](QRgb fill, QRgb line, QRgb text) {
        const QImage image = picture(*box);
        EXPECT_EQ(image.pixel(7, 3), fill);
        EXPECT_EQ(image.pixel(7, 1), line);
        EXPECT_EQ(colourOfBlocks(image, 30, 8), text);
    };
    expect(prominent, prominentTop, label);
    box->setEnabled(false);
    expect(pillDisabled, checkBoxDisabledLine, disabledText);
    EXPECT_NEAR(ink(picture(*box), QRect(16, 0, box->width() - 16, 16)).left(), 20, 1);
}

TEST_F(ControlsTest, sign_of_a_mnemonic_is_not_drawn) {
    auto* plain = new QCheckBox(u"Karte"_s, &window);
    auto* marked = new QCheckBox(u"Kar&te"_s, &window);
    for (QCheckBox* box : {plain, marked})
        box->setFixedSize(120, 20);
    show();
    EXPECT_EQ(picture(*marked), picture(*plain));
}

TEST_F(ControlsTest, menu_shows_a_doubled_ampersand_once) {
    const QString shown = u"Orte &&&& Routen"_s;
    QMenu menu;
    menu.addAction(look::literal(shown));
    show();
    menu.popup(QPoint(10, 10));
    const int text = QFontMetrics(menu.font()).horizontalAdvance(shown);
    EXPECT_NEAR(ink(picture(menu), QRect(8, 8, menu.width() - 16, 16)).width(), text, 3);
    menu.close();
}

TEST_F(ControlsTest, entry_that_cannot_be_chosen_is_grey_with_its_key) {
    QMenu menu;
    QAction* entry = menu.addAction(u"████"_s);
    entry->setShortcut(Qt::CTRL | Qt::Key_W);
    show();
    menu.popup(QPoint(10, 10));
    const QRect key(menu.width() / 2, 8, menu.width() / 2 - 8, 16);
    const auto brightest = [&] {
        const QImage image = picture(menu);
        int most = 0;
        for (int y = key.top(); y <= key.bottom(); ++y)
            for (int x = key.left(); x <= key.right(); ++x)
                most = qMax(most, qGray(image.pixel(x, y)));
        return most;
    };
    EXPECT_GT(brightest(), qGray(look::colours::disabledText) + 20);
    entry->setEnabled(false);
    EXPECT_LE(brightest(), qGray(look::colours::disabledText));
    EXPECT_EQ(colourOfBlocks(picture(menu), 35, menu.height() / 2), look::colours::disabledText);
    menu.close();
}

TEST_F(ControlsTest, spinner_turns_only_while_it_is_told_to) {
    auto* spinner = new look::Spinner(&window);
    show();
    EXPECT_FALSE(spinner->isVisible());
    spinner->setTurning(true);
    EXPECT_TRUE(spinner->isVisible());
    EXPECT_EQ(spinner->size(), QSize(16, 16));
    const QImage first = picture(*spinner);
    EXPECT_TRUE(QTest::qWaitFor([&] { return picture(*spinner) != first; }));
    spinner->setTurning(false);
    EXPECT_FALSE(spinner->isVisible());
    EXPECT_FALSE(spinner->isTurning());
}

TEST_F(ControlsTest, spinner_tells_how_long_it_has_turned) {
    using namespace std::chrono_literals;
    const std::pair<std::chrono::seconds, QString> spans[] = {{0s, u"0:00"_s},
                                                              {59s, u"0:59"_s},
                                                              {2min + 31s, u"2:31"_s},
                                                              {59min + 59s, u"59:59"_s},
                                                              {1h, u"1:00:00"_s},
                                                              {62min + 31s, u"1:02:31"_s},
                                                              {100h + 1s, u"100:00:01"_s}};
    for (const auto& [span, text] : spans)
        EXPECT_EQ(look::clockText(span), text);

    auto* spinner = new look::Spinner(&window);
    show();
    for (int turn = 0; turn < 2; ++turn) {
        const auto begin = std::chrono::steady_clock::now();
        const auto turned = [begin] { return std::chrono::steady_clock::now() - begin; };
        spinner->setTurning(true);
        ASSERT_TRUE(QTest::qWaitFor([&] { return turned() > 1s; }));
        ASSERT_TRUE(showsToolTip(*spinner));
        const QString told = look::shownToolTip()->accessibleName();
        const auto most = std::chrono::floor<std::chrono::seconds>(turned());
        EXPECT_TRUE(told == u"0:01"_s || told == look::clockText(most)) << told.toStdString();
        spinner->setTurning(false);
    }
}

} // namespace
