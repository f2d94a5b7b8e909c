// A desktop with large print: the design's sizes are logical pixels, and none of them moves.

#include "SearchWindowTest.h"
#include "look/style/Style.h"
#include "look/style/ToolTip.h"

#include <QMenu>
#include <QMenuBar>

const ProgramLanguage programLanguage{"de", "de"};

namespace {

// Everything that shows: where it stands, and the size of its letters.
using Picture = QMap<QString, std::pair<QRect, int>>;

class LargeFontTest : public SearchWindowTest,
                      public testing::WithParamInterface<NXImportApp::Mode> {
protected:
    void TearDown() override {
        SearchWindowTest::TearDown();
        useDesktopFont(desktopFont_);
    }

    // As a desktop says it: before the look is put on, for everything and for some kinds of
    // control.
    static void useDesktopFont(const QFont& font) {
        QApplication::setFont(font);
        for (const char* kind : {"QMenu", "QMenuBar", "QPushButton", "QComboBox", "QLabel",
                                 "QCheckBox", "QTipLabel", "QListView", "QAbstractItemView"})
            QApplication::setFont(font, kind);
        look::applyLook(*qApp);
    }

    Picture windowWith(const QFont& font) {
        useDesktopFont(font);
        start(GetParam());
        findPlaces(GetParam());
        settle();
        Picture found;
        int number = 0;
        for (const QWidget* each : window()->findChildren<QWidget*>()) {
            if (each->isVisible() && each->window() == window()) {
                const QString name = u"%1 %2 %3"_s.arg(
                    QString::number(number++), QLatin1StringView(each->metaObject()->className()),
                    each->objectName());
                found[name] = {QRect(each->mapTo(window(), QPoint()), each->size()),
                               each->font().pixelSize()};
            }
        }
        QMenu* menu = window()->menuBar()->actions().first()->menu();
        menu->popup(QPoint(10, 10));
        found[u"menu"_s] = {menu->actionGeometry(menu->actions().last()), menu->font().pixelSize()};
        found[u"menu window"_s] = {QRect(QPoint(), menu->size()), 0};
        menu->close();
        toolTipAt(button("languageButton"), QPoint(4, 4));
        found[u"tooltip"_s] = {QRect(QPoint(), look::shownToolTip()->size()), 0};
        click(button("languageButton"));
        settle();
        for (const QWidget* each : alert()->findChildren<QWidget*>()) {
            const QString name = u"%1 %2 of the dialog"_s.arg(
                QString::number(number++), QLatin1StringView(each->metaObject()->className()));
            if (each->isVisible() && each->window() == window())
                found[name] = {each->geometry(), each->font().pixelSize()};
        }
        found[u"dialog"_s] = {QRect(QPoint(), alert()->size()), 0};
        alert()->reject();
        settle();
        end();
        return found;
    }

private:
    const QFont desktopFont_ = QApplication::font();
};

TEST_P(LargeFontTest, no_control_and_no_letter_changes_its_size) {
    QFont usual = QApplication::font();
    usual.setPointSizeF(9);
    const Picture before = windowWith(usual);
    EXPECT_GT(before.size(), 20);
    for (const double points : {12.0, 12.0 * 1.25, 24.0}) {
        SCOPED_TRACE(points);
        QFont large = usual;
        large.setPointSizeF(points);
        const Picture after = windowWith(large);
        EXPECT_EQ(before.keys(), after.keys());
        for (auto each = before.cbegin(); each != before.cend(); ++each) {
            const auto now = after.value(each.key());
            EXPECT_EQ(each.value().first, now.first) << each.key().toStdString();
            EXPECT_EQ(each.value().second, now.second) << each.key().toStdString();
        }
    }
}

// A size in points would grow with the desktop.
TEST_P(LargeFontTest, every_letter_is_measured_in_pixels) {
    QFont large = QApplication::font();
    large.setPointSizeF(15);
    useDesktopFont(large);
    start(GetParam());
    for (const QWidget* each : window()->findChildren<QWidget*>()) {
        EXPECT_GT(each->font().pixelSize(), 0)
            << each->metaObject()->className() << ' ' << each->objectName().toStdString();
        EXPECT_LE(each->font().pixelSize(), 26);
    }
}

INSTANTIATE_TEST_SUITE_P(Modes, LargeFontTest,
                         testing::Values(NXImportApp::Mode::Place, NXImportApp::Mode::Route));

} // namespace
