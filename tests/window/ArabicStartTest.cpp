// The window from right to left: everything is mirrored but for addresses and coordinates.

#include "LanguageWindowTest.h"
#include "localization/NXLocal.h"
#include "look/controls/Glyphs.h"

#include <QMenuBar>

const ProgramLanguage programLanguage{"ar", ""};

namespace {

class ArabicStartTest : public LanguageWindowTest {
protected:
    // Where a control would be from left to right.
    QRect mirrored(const QWidget* widget) const {
        QRect r = place(widget);
        r.moveLeft(window()->centralWidget()->width() - r.x() - r.width());
        return r;
    }
    QRect mirrored(const char* name) const { return mirrored(control(name)); }

    // The leftmost and the rightmost column of a picture whose colour is not its corner's. The
    // frame is left out.
    static std::pair<int, int> ink(QWidget* widget) {
        const QImage picture = widget->grab(widget->rect().adjusted(8, 4, -8, -4)).toImage();
        int first = picture.width();
        int last = -1;
        for (int x = 0; x < picture.width(); ++x) {
            for (int y = 0; y < picture.height(); ++y) {
                if (picture.pixel(x, y) != picture.pixel(0, 0)) {
                    first = std::min(first, x);
                    last = x;
                }
            }
        }
        return {first, last};
    }
};

TEST_F(ArabicStartTest, place_mode_is_mirrored) {
    start();
    EXPECT_EQ(QApplication::layoutDirection(), Qt::RightToLeft);
    EXPECT_EQ(mirrored(window()->findChild<look::BuildingGlyph*>()), QRect(22, 23, 34, 34));
    EXPECT_EQ(mirrored("subtitle").topLeft(), QPoint(66, 49));
    EXPECT_EQ(mirrored("mode").topLeft(), QPoint(22, 75));
    EXPECT_EQ(mirrored("query"), QRect(22, 115, 658, 34));
    EXPECT_EQ(mirrored("searchButton"), QRect(690, 116, 108, 32));
    EXPECT_EQ(mirrored("table"), QRect(22, 184, 776, 250));
    EXPECT_EQ(mirrored("endpoint"), QRect(580, 444, 218, 28));
    EXPECT_EQ(mirrored("endpointField"), QRect(22, 482, 776, 24));
    EXPECT_EQ(mirrored("status"), QRect(22, 516, 776, 48));
    EXPECT_EQ(mirrored("languageButton").topLeft(), QPoint(22, 574));
    EXPECT_EQ(mirrored("downloadButton").right(), 797);
    EXPECT_EQ(mirrored("credit").topLeft(), QPoint(22, 616));
}

TEST_F(ArabicStartTest, route_mode_is_mirrored) {
    start(Mode::Route);
    EXPECT_EQ(mirrored("table"), QRect(22, 184, 383, 250));
    EXPECT_EQ(mirrored("routePane"), QRect(415, 184, 383, 250));
    EXPECT_EQ(mirrored("removeStationButton").x(), 415);
    EXPECT_EQ(mirrored("addStationButton").right(), 797);
    EXPECT_EQ(mirrored("routeEndpointField"), QRect(22, 472, 776, 26));
    EXPECT_EQ(mirrored("routeMapCheckbox").right(), 797);
}

TEST_F(ArabicStartTest, segments_run_from_right_to_left) {
    start();
    const auto mode = segments("mode");
    EXPECT_GT(place(mode.at(0)).x(), place(mode.at(1)).x());
    mode.at(0)->setFocus(Qt::TabFocusReason);
    key(QApplication::focusWidget(), Qt::Key_Left);
    EXPECT_TRUE(mode.at(1)->isChecked());
    key(QApplication::focusWidget(), Qt::Key_Right);
    EXPECT_TRUE(mode.at(0)->isChecked());
}

// A path begins on the left, but the text lies at the field's leading edge.
TEST_F(ArabicStartTest, addresses_stay_left_to_right_at_the_leading_edge) {
    start(Mode::Route);
    for (const char* name : {"endpointField", "routeEndpointField"}) {
        if (QLatin1StringView(name) == "endpointField"_L1)
            chooseMode(0);
        else
            chooseMode(1);
        settle();
        look::Field* address = field(name);
        address->clearFocus();
        const auto [first, last] = ink(address);
        const int width = address->width() - 16;
        EXPECT_GT(first, width / 2) << name;
        EXPECT_GT(last, width - 12) << name;
        // The cursor tells the order: it stands further right behind more letters.
        address->setFocus();
        address->setCursorPosition(0);
        const int before = address->inputMethodQuery(Qt::ImCursorRectangle).toRect().x();
        address->setCursorPosition(8);
        EXPECT_GT(address->inputMethodQuery(Qt::ImCursorRectangle).toRect().x(), before) << name;
    }
}

TEST_F(ArabicStartTest, the_first_menu_is_on_the_right) {
    start();
    const auto menus = window()->menuBar()->actions();
    ASSERT_EQ(menus.size(), 3);
    EXPECT_GT(window()->menuBar()->actionGeometry(menus.at(0)).x(),
              window()->menuBar()->actionGeometry(menus.at(1)).x());
}

TEST_F(ArabicStartTest, the_question_follows_the_window_and_the_confirmation_the_choice) {
    start();
    openDialog();
    EXPECT_EQ(dialog()->layoutDirection(), Qt::RightToLeft);
    EXPECT_EQ(dialog()->heading()->text(), localization::localText(u"Sprache wählen"_s, "ar"));
    EXPECT_EQ(languages()->layoutDirection(), Qt::RightToLeft);
    EXPECT_EQ(languages()->currentText(), u"العربية"_s);
    EXPECT_LT(dialog()->prominentButton()->x(), dialog()->otherButton()->x()) << "mirrored";
    chooseItem(2); // English
    pressProminent();

    look::Panel* confirmation = alert();
    ASSERT_NE(confirmation, nullptr);
    EXPECT_EQ(confirmation->layoutDirection(), Qt::LeftToRight);
    EXPECT_EQ(confirmation->heading()->text(), u"Language saved"_s);
    EXPECT_EQ(confirmation->prominentButton()->layoutDirection(), Qt::LeftToRight);
    pressProminent();
    EXPECT_EQ(alert(), nullptr);
    EXPECT_EQ(stored(), "en\n");
}

TEST_F(ArabicStartTest, an_arabic_confirmation_is_read_from_right_to_left) {
    start();
    openDialog();
    pressProminent();
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->layoutDirection(), Qt::RightToLeft);
    EXPECT_EQ(alert()->prominentButton()->title(), u"OK"_s);
    pressProminent();
}

} // namespace
