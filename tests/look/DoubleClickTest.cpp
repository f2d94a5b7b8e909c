#include "LookTest.h"
#include "look/controls/Button.h"

#include <utility>

namespace {

using look::Button;

class DoubleClickTest : public LookTest {
protected:
    Button* make() {
        auto* button = new Button(look::ButtonKind::Push, u"Abbrechen"_s, &window);
        button->setGeometry(50, 50, 100, 32);
        return button;
    }

    // To the window, as a mouse does.
    void clickTwice() {
        QTest::mouseDClick(window.windowHandle(), Qt::LeftButton, {}, QPoint(80, 60));
    }
    void click() { QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, QPoint(80, 60)); }
};

TEST_F(DoubleClickTest, what_slides_under_the_pointer_is_not_pressed) {
    int pressed = 0;
    Button* below = make();
    QObject::connect(below, &Button::clicked, &window, [&] { ++pressed; });
    for (const bool isDeleted : {false, true}) {
        Button* above = make();
        QObject::connect(above, &Button::clicked, &window, [above, isDeleted] {
            above->hide();
            if (isDeleted)
                above->deleteLater();
        });
        show();
        above->show();
        clickTwice();
        EXPECT_FALSE(below->isDown());
        EXPECT_EQ(std::exchange(pressed, 0), 0);
        QTest::qWait(QApplication::doubleClickInterval() + 1);
        click();
        EXPECT_EQ(std::exchange(pressed, 0), 1) << "a press of its own counts";
        QTest::qWait(QApplication::doubleClickInterval() + 1);
    }
}

TEST_F(DoubleClickTest, on_one_button_both_presses_count) {
    int pressed = 0;
    QObject::connect(make(), &Button::clicked, &window, [&] { ++pressed; });
    show();
    clickTwice();
    EXPECT_EQ(pressed, 2);
}

} // namespace
