#include "look/controls/PlaceList.h"

#include "LookTest.h"
#include "look/style/Colours.h"
#include "look/style/ToolTip.h"
#include "look/text/Fonts.h"
#include "look/text/Label.h"
#include "look/text/LiteralText.h"

#include <QAccessible>
#include <QBoxLayout>
#include <QHelpEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QStyleOptionViewItem>

using namespace Qt::StringLiterals;

namespace {

using look::PlaceList;

class PlaceListTest : public LookTest {
protected:
    PlaceListTest() : list(new PlaceList(&window)) {
        list->setGeometry(20, 20, 400, 250);
        list->setModel(&model);
    }

    void add(const QString& name, const QString& detail = {}) {
        auto* item = new QStandardItem(name);
        item->setData(detail, look::PlaceListModel::detailRole);
        model.appendRow(item);
    }

    // The row as the delegate draws it, 400 wide.
    QImage drawn(const QString& name, const QString& detail = {},
                 Qt::LayoutDirection direction = Qt::LeftToRight) {
        model.clear();
        add(name, detail);
        QImage image(400, 48, QImage::Format_RGB32);
        image.fill(look::colours::well);
        QPainter painter(&image);
        QStyleOptionViewItem option;
        option.rect = image.rect();
        option.state = QStyle::State_Enabled | QStyle::State_Active;
        option.direction = direction;
        list->itemDelegate()->paint(&painter, option, model.index(0, 0));
        return image;
    }

    QRgb rowColour(int row, QPoint inRow = {200, 4}) {
        return colourAt(window, list->pos() + QPoint(1, 1 + 50 * row) + inRow);
    }

    QStandardItemModel model;
    PlaceList* list;
};

const QRect nameBox(4, 5, 390, 20);
const QRect detailBox(4, 28, 390, 15);

TEST_F(PlaceListTest, rows_are_drawn_as_they_are_written) {
    const QFontMetricsF metrics(look::font(14, QFont::Medium));
    for (const char16_t* text : {u"<b>x</b>", u"&lt;x", u"<img src=x>", u"%@ %1 %lu %s %n",
                                 u"A & B && C", u"🎬👩‍👩‍👧‍👦🏳️‍🌈",
                                 u"القاهرة 12", u"\u202eabc\u202c \u2067def\u2069"}) {
        const QString written = QString::fromUtf16(text);
        // The ink ends where the last letter does, the metrics where the next one would begin.
        EXPECT_NEAR(ink(drawn(written), nameBox).width(), metrics.horizontalAdvance(written), 4)
            << written.toStdString();
        EXPECT_GT(ink(drawn({}, written), detailBox).width(), 15) << written.toStdString();
    }
}

TEST_F(PlaceListTest, name_and_detail_have_the_places_and_letters_of_the_design) {
    using namespace look;
    const struct {
        QRect box;
        QFont font;
        QRgb colour;
    } lines[] = {{{10, 7, 380, 17}, fontForNames(14, QFont::Medium), colours::labelOnWell},
                 {{10, 27, 380, 14}, fontForNames(11), colours::secondaryOnWell}};
    QImage wanted(400, 48, QImage::Format_RGB32);
    wanted.fill(colours::well);
    QPainter painter(&wanted);
    for (const auto& [box, font, colour] : lines)
        drawLine(painter, box, fitLine(u"Berlin"_s, font, box.width()), font, colour, Qt::AlignLeft,
                 Qt::LeftToRight);
    painter.end();
    EXPECT_EQ(drawn(u"Berlin"_s, u"Berlin"_s), wanted);
}

TEST_F(PlaceListTest, control_characters_and_line_breaks_are_spaces) {
    const QImage spaces = drawn(u"a b c"_s, u"d e f"_s);
    for (const char16_t letter :
         {u'\n', u'\r', u'\t', u'\u2028', u'\u2029', u'\u0085', u'\u0007'}) {
        const QChar control(letter);
        EXPECT_EQ(drawn(u"a%1b%1c"_s.arg(control), u"d%1e%1f"_s.arg(control)), spaces)
            << int(letter);
    }
}

TEST_F(PlaceListTest, long_texts_are_elided_inside_the_row) {
    const QImage image = drawn(QString(1000, u'm'), QString(1000, u'm'));
    for (const QRect& box : {nameBox, detailBox}) {
        EXPECT_LE(ink(image, box).right(), 389);
        EXPECT_GT(ink(image, box).right(), 370);
    }
}

TEST_F(PlaceListTest, hundred_kilobytes_of_name_cost_no_more_than_what_is_seen) {
    const QString texts[] = {u"Straße العربية 東京 "_s.repeated(6000).left(hundredKilobytes),
                             QString(hundredKilobytes, u'i'),
                             QString(hundredKilobytes, QChar(0x0301))};
    for (const QString& whole : texts) {
        const double times = growth(whole, [&](const QString& text) { drawn(text, text); });
        EXPECT_LT(times, mostGrowth) << whole.left(8).toStdString();
    }
}

TEST_F(PlaceListTest, each_line_keeps_its_own_order_at_the_leading_edge) {
    const QString arabic = u"برلين 12"_s;
    const QString latin = u"Berlin, 12"_s;
    for (const QString& text : {arabic, latin}) {
        EXPECT_LE(ink(drawn(text, text), nameBox).left(), 12);
        EXPECT_GE(ink(drawn(text, text, Qt::RightToLeft), nameBox).right(), 386);
        EXPECT_GE(ink(drawn(text, text, Qt::RightToLeft), detailBox).right(), 386);
    }
    // The comma at the end tells the order.
    const QString comma = u"Berlin,"_s;
    const QRect ends(372, 5, 20, 20);
    EXPECT_NE(ink(drawn(comma, {}, Qt::RightToLeft), ends),
              ink(drawn(u"Berlin"_s, {}, Qt::RightToLeft), ends));
}

TEST_F(PlaceListTest, rows_have_the_colours_of_their_states) {
    for (int row = 0; row < 2; ++row)
        add(u"████"_s, u"████"_s);
    const QPoint inName(14, 16);
    const QPoint inDetail(20, 35);
    auto* other = new QWidget(&window);
    other->setFocusPolicy(Qt::StrongFocus);
    show();
    QTest::mouseMove(&window, QPoint(700, 500));
    EXPECT_EQ(rowColour(0), look::colours::well);
    QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, QPoint(200, 20));
    ASSERT_TRUE(list->hasFocus());
    EXPECT_EQ(rowColour(0), look::colours::selection);
    QTest::mouseMove(list->viewport(), QPoint(200, 70));
    EXPECT_EQ(rowColour(1), look::colours::rowHover);
    EXPECT_EQ(rowColour(1, inName), look::colours::labelOnWell);
    EXPECT_EQ(rowColour(1, inDetail), look::colours::secondaryOnWell);
    EXPECT_EQ(rowColour(0, inName), look::colours::white);
    EXPECT_EQ(rowColour(0, inDetail), look::colours::selectionDetail);
    EXPECT_EQ(rowColour(0), look::colours::selection);
    other->setFocus();
    EXPECT_EQ(rowColour(0), look::colours::selectionUnfocused);
    EXPECT_EQ(rowColour(0, inName), look::colours::label);
    EXPECT_EQ(rowColour(0, inDetail), look::colours::selectionUnfocusedDetail);
    list->setEnabled(false);
    EXPECT_EQ(rowColour(0), look::colours::selectionDisabled);
    EXPECT_EQ(rowColour(1), look::colours::well);
}

TEST_F(PlaceListTest, one_row_is_chosen_whatever_key_is_held_with_the_click) {
    add(u"Ulm"_s);
    add(u"Bonn"_s);
    show();
    int row = 0;
    for (const Qt::KeyboardModifier key :
         {Qt::NoModifier, Qt::ControlModifier, Qt::ShiftModifier}) {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, key, QPoint(200, 20 + 50 * row));
        EXPECT_EQ(list->selectionModel()->selectedIndexes(), QModelIndexList{model.index(row, 0)});
        row = 1 - row;
    }
}

TEST_F(PlaceListTest, selection_is_grey_in_a_window_that_is_not_active) {
    add(u"Berlin"_s);
    show();
    list->setFocus();
    list->setCurrentIndex(model.index(0, 0));
    EXPECT_EQ(rowColour(0), look::colours::selection);
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    EXPECT_EQ(rowColour(0), look::colours::selectionUnfocused);
}

TEST_F(PlaceListTest, highlight_is_inset_in_a_row_of_48_with_2_below) {
    add(u"a"_s);
    add(u"b"_s);
    show();
    list->setFocus();
    list->setCurrentIndex(model.index(0, 0));
    EXPECT_EQ(rowColour(0, {2, 24}), look::colours::well);
    EXPECT_EQ(rowColour(0, {3, 24}), look::colours::selection);
    EXPECT_EQ(rowColour(0, {200, 1}), look::colours::well);
    EXPECT_EQ(rowColour(0, {200, 2}), look::colours::selection);
    EXPECT_EQ(rowColour(0, {200, 45}), look::colours::selection);
    EXPECT_EQ(rowColour(0, {200, 46}), look::colours::well);
    EXPECT_EQ(list->visualRect(model.index(1, 0)).top(), 50);
}

TEST_F(PlaceListTest, five_rows_fit_and_the_sixth_brings_the_scroll_bar) {
    for (int i = 0; i < 5; ++i)
        add(QString::number(i));
    show();
    EXPECT_FALSE(list->verticalScrollBar()->isVisible());
    EXPECT_EQ(list->viewport()->width(), 398);
    add(u"6"_s);
    EXPECT_TRUE(QTest::qWaitFor([this] { return list->verticalScrollBar()->isVisible(); }));
    EXPECT_EQ(list->viewport()->width(), 386);
    EXPECT_EQ(list->verticalScrollBar()->maximum(), 6 * 48 + 5 * 2 - 248);
}

TEST_F(PlaceListTest, scroll_thumb_lies_in_its_gutter_without_a_groove) {
    for (int i = 0; i < 10; ++i)
        add(QString::number(i));
    show();
    QTest::mouseMove(&window, QPoint(700, 500));
    QScrollBar* bar = list->verticalScrollBar();
    ASSERT_TRUE(QTest::qWaitFor([&] { return bar->isVisible(); }));
    const QPoint gutter = bar->mapTo(&window, QPoint());
    EXPECT_EQ(bar->width(), 12);
    const auto at = [&](int x, int y) { return colourAt(window, gutter + QPoint(x, y)); };
    EXPECT_EQ(at(2, 30), look::colours::well);
    EXPECT_EQ(at(3, 30), look::colours::thumb);
    EXPECT_EQ(at(8, 30), look::colours::thumb);
    EXPECT_EQ(at(9, 30), look::colours::well);
    EXPECT_EQ(at(6, 2), look::colours::well);
    EXPECT_EQ(at(6, 5), look::colours::thumb);
    EXPECT_EQ(at(6, 230), look::colours::well);
    QTest::mouseMove(bar, QPoint(6, 30));
    EXPECT_EQ(at(6, 30), look::colours::thumbHover);
    QTest::mousePress(bar, Qt::LeftButton, {}, QPoint(6, 30));
    QTest::mouseMove(bar, QPoint(6, 300));
    QTest::mouseRelease(bar, Qt::LeftButton, {}, QPoint(6, 300));
    EXPECT_EQ(bar->value(), bar->maximum());
    EXPECT_EQ(at(6, 240), look::colours::thumb) << "the pointer is below the list";
    list->setEnabled(false);
    EXPECT_EQ(at(6, 240), look::colours::thumbDisabled);
}

TEST_F(PlaceListTest, gutter_lies_at_the_trailing_edge) {
    for (int i = 0; i < 10; ++i)
        add(QString::number(i));
    list->setLayoutDirection(Qt::RightToLeft);
    show();
    QScrollBar* bar = list->verticalScrollBar();
    ASSERT_TRUE(QTest::qWaitFor([&] { return bar->isVisible(); }));
    EXPECT_EQ(bar->mapTo(list, QPoint()).x(), 1);
}

TEST_F(PlaceListTest, frame_is_round_and_takes_its_disabled_colour) {
    show();
    list->clearFocus();
    EXPECT_EQ(colourAt(*list, QPoint(200, 0)), look::colours::border);
    EXPECT_EQ(colourAt(window, list->pos()), look::colours::window);
    EXPECT_EQ(colourAt(*list, QPoint(200, 100)), look::colours::well);
    list->setEnabled(false);
    EXPECT_EQ(colourAt(*list, QPoint(200, 0)), look::colours::borderDisabled);
}

TEST_F(PlaceListTest, tooltip_of_a_row_is_plain) {
    add(u"Berlin"_s);
    model.item(0)->setToolTip(u"<b>Deutschland</b>"_s);
    show();
    const auto ask = [this](QPoint position) {
        QHelpEvent help(QEvent::ToolTip, position, list->viewport()->mapToGlobal(position));
        QApplication::sendEvent(list->viewport(), &help);
    };
    ask(QPoint(30, 20));
    ASSERT_TRUE(look::shownToolTip());
    EXPECT_EQ(look::shownToolTip()->accessibleName(), u"<b>Deutschland</b>"_s);
    ask(QPoint(30, 200));
    EXPECT_FALSE(look::shownToolTip());
}

TEST_F(PlaceListTest, assistive_technology_reads_the_row_as_the_model_says_it) {
    add(u"Berlin"_s);
    model.item(0)->setAccessibleText(u"Berlin <b>, Deutschland"_s);
    list->setAccessibleName(u"Treffer"_s);
    show();
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(list);
    EXPECT_EQ(spoken->text(QAccessible::Name), u"Treffer"_s);
    EXPECT_EQ(spoken->child(0)->text(QAccessible::Name), u"Berlin <b>, Deutschland"_s);
}

TEST_F(PlaceListTest, empty_text_is_a_sibling_that_comes_and_goes_with_the_list) {
    list->setEmptyText(u"Ergebnisse erscheinen nach der Suche"_s);
    show();
    look::Label* label = list->emptyLabel();
    EXPECT_EQ(label->parentWidget(), list->parentWidget());
    EXPECT_TRUE(label->isVisible());
    const QPoint apart = label->geometry().center() - list->geometry().center();
    EXPECT_LE(qMax(qAbs(apart.x()), qAbs(apart.y())), 1);

    list->setEmptyText(u"Ergebnisse "_s.repeated(50));
    EXPECT_EQ(label->width(), list->width() - 24);
    list->resize(300, 200);
    EXPECT_EQ(label->width(), 300 - 24);
    list->hide();
    EXPECT_FALSE(label->isVisible());
    list->show();
    EXPECT_TRUE(label->isVisible());
    list->setEmptyText({});
    EXPECT_FALSE(label->isVisible());
}

TEST_F(PlaceListTest, empty_text_follows_the_list_into_another_parent) {
    auto* pane = new QWidget(&window);
    auto* column = new QVBoxLayout(pane);
    pane->setGeometry(100, 100, 400, 400);
    auto* late = new PlaceList;
    late->setEmptyText(u"leer"_s);
    column->addWidget(late);
    show();
    EXPECT_EQ(late->emptyLabel()->parentWidget(), pane);
    EXPECT_TRUE(late->emptyLabel()->isVisible());
    delete late;
    EXPECT_TRUE(pane->findChildren<look::Label*>().isEmpty());
}

TEST_F(PlaceListTest, click_goes_through_the_empty_text_to_the_list) {
    list->setEmptyText(u"leer"_s);
    show();
    EXPECT_EQ(window.childAt(list->geometry().center()), list->viewport());
}

} // namespace
