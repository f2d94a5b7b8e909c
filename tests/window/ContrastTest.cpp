// Every text can be read: the contrast of what is really on the screen, in every state of the
// window and of each control, by the measure of the Web Content Accessibility Guidelines 2.

#include "SearchWindowTest.h"
#include "look/style/Colours.h"
#include "look/style/FocusRing.h"
#include "look/style/ToolTip.h"

#include <QAbstractItemView>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>

#include <cmath>

const ProgramLanguage programLanguage{"de", "de"};

namespace {

constexpr double enabledText = 4.5;
constexpr double disabledText = 3; // and what is no text

// At this scale the strokes of the smallest text are wide enough to have their full colour.
constexpr int scale = 4;

double linear(int channel) {
    const double value = channel / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double luminance(QRgb colour) {
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) +
           0.0722 * linear(qBlue(colour));
}

double contrast(QRgb one, QRgb other) {
    const double first = luminance(one);
    const double second = luminance(other);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QImage pictureOf(QWidget* widget) {
    QImage picture(widget->size() * scale, QImage::Format_ARGB32_Premultiplied);
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::transparent); // round corners leave something free
    QPainter painter(&picture);
    widget->render(&painter);
    painter.end();
    return picture.convertToFormat(QImage::Format_RGB32);
}

// What stands in a rectangle of a picture: the most frequent colour is the ground, and of the
// others that are more than the rim of a letter the one that differs most is the text.
struct Reading {
    QRgb ground = 0;
    QRgb text = 0;
    double contrast = 1; // of nothing at all
};

Reading read(const QImage& picture, const QRect& area) {
    const QRect inside =
        QRect(area.topLeft() * scale, area.size() * scale).intersected(picture.rect());
    QHash<QRgb, int> colours;
    for (int y = inside.top(); y <= inside.bottom(); ++y)
        for (int x = inside.left(); x <= inside.right(); ++x)
            ++colours[picture.pixel(x, y)];
    constexpr int least = 12;
    Reading found;
    int most = 0;
    for (auto each = colours.cbegin(); each != colours.cend(); ++each) {
        if (each.value() > most) {
            most = each.value();
            found.ground = each.key();
        }
    }
    found.text = found.ground;
    for (auto each = colours.cbegin(); each != colours.cend(); ++each) {
        const double here = contrast(each.key(), found.ground);
        if (each.value() >= least && here > found.contrast) {
            found.contrast = here;
            found.text = each.key();
        }
    }
    return found;
}

class ContrastTest : public SearchWindowTest {
protected:
    void expectReadable(const QImage& picture, const QRect& area, const std::string& what,
                        double least) {
        ++measured_;
        const Reading found = read(picture, area);
        EXPECT_GE(found.contrast, least)
            << what << ": " << hex(found.text) << " on " << hex(found.ground);
    }

    // All texts of a window as they are now.
    void expectReadable(QWidget* of, const std::string& state) {
        SCOPED_TRACE(state);
        settle();
        const QImage picture = pictureOf(of);
        for (const look::Label* label : shown<look::Label>(of))
            if (!label->text().isEmpty())
                expectPart(picture, label, label->rect(), label->text(), enabledText);
        for (look::Button* button : shown<look::Button>(of))
            expectButton(picture, button);
        for (const QRadioButton* segment : shown<QRadioButton>(of))
            expectPart(picture, segment, segment->rect().adjusted(6, 4, -6, -4), segment->text());
        for (const look::PopUp* popUp : shown<look::PopUp>(of))
            expectPopUp(picture, popUp);
        for (const look::Field* field : shown<look::Field>(of))
            expectField(picture, field);
        for (const QCheckBox* box : shown<QCheckBox>(of))
            expectPart(picture, box, box->rect().adjusted(20, 0, 0, 0), box->text());
        for (const look::PlaceList* list : shown<look::PlaceList>(of))
            expectRows(picture, list);
        if (of == window()) {
            const QMenuBar* bar = window()->menuBar();
            for (const QAction* action : bar->actions())
                expectPart(picture, bar, bar->actionGeometry(const_cast<QAction*>(action)),
                           action->text());
        }
    }

    void expectButton(const QImage& picture, const look::Button* button) {
        expectPart(picture, button, button->rect().adjusted(8, 4, -8, -4), button->title());
    }

    void expectPopUp(const QImage& picture, const look::PopUp* popUp) {
        expectPart(picture, popUp, popUp->textRectangle(), popUp->currentText());
        const QRect chevrons(popUp->width() - 18, 7, 9, 14);
        expectPart(picture, popUp, chevrons, u"chevrons"_s, disabledText);
    }

    void expectField(const QImage& picture, const look::Field* field) {
        const QString text = field->text().isEmpty() ? field->placeholderText() : field->text();
        if (text.isEmpty())
            return; // nothing to read, and nothing to type
        // Without the cursor before the first letter.
        expectPart(picture, field, field->rect().adjusted(13, 3, -9, -3), text);
    }

    // Of each row in view the name and the detail, and from an empty list its text.
    void expectRows(const QImage& picture, const look::PlaceList* list) {
        for (int i = 0; i < list->model()->rowCount(); ++i) {
            const QModelIndex index = list->model()->index(i, 0);
            const QRect row = list->visualRect(index);
            if (!list->viewport()->rect().contains(row.adjusted(0, 0, 0, -4)))
                continue;
            const QString name = index.data().toString();
            const QRect line(row.left() + 10, row.top() + 7, row.width() - 20, 17);
            expectPart(picture, list->viewport(), line, name);
            expectPart(picture, list->viewport(), line.translated(0, 20), u"detail of "_s + name);
        }
    }

    // A part of a widget; what it needs follows from whether it is enabled.
    void expectPart(const QImage& picture, const QWidget* widget, const QRect& part,
                    const QString& text, double least = 0) {
        if (least == 0)
            least = widget->isEnabled() ? enabledText : disabledText;
        const QPoint origin = widget->mapTo(widget->window(), part.topLeft());
        const char* name = widget->isEnabled() ? "" : " (disabled)";
        expectReadable(picture, QRect(origin, part.size()), text.toStdString() + name, least);
    }

    void pointAtNothing() {
        QTest::mouseMove(window()->centralWidget(), QPoint(3, 700));
        settle();
    }

    // Each entry of a menu, normal or disabled as it is now, and highlighted.
    void expectMenu(QMenu* menu) {
        menu->popup(window()->mapToGlobal(QPoint(40, 40)));
        settle();
        int entries = 0;
        for (QAction* highlighted : menu->actions()) {
            menu->setActiveAction(highlighted->isEnabled() ? highlighted : nullptr);
            const QImage picture = pictureOf(menu);
            for (QAction* action : menu->actions()) {
                if (action->isSeparator() || !action->isVisible())
                    continue;
                ++entries;
                const QRect row = menu->actionGeometry(action);
                const double least = action->isEnabled() ? enabledText : disabledText;
                const QRect title(row.left() + 26, row.top() + 2, (row.width() - 34) / 2,
                                  row.height() - 4);
                expectReadable(picture, title, action->text().toStdString(), least);
                if (!action->shortcut().isEmpty()) {
                    const QRect keys(row.right() - 30, row.top() + 2, 22, row.height() - 4);
                    expectReadable(picture, keys, "keys of " + action->text().toStdString(), least);
                }
            }
        }
        EXPECT_GT(entries, 0);
        menu->close();
    }

    int measured_ = 0;
};

TEST(Contrast, is_measured_as_the_guidelines_define_it) {
    EXPECT_NEAR(contrast(0xff000000, 0xffffffff), 21, 0.001);
    EXPECT_NEAR(contrast(0xff767676, 0xffffffff), 4.54, 0.005);
    EXPECT_NEAR(contrast(0xffeaeaea, 0xff28282b), 12.2, 0.05);
}

// The controls wear them in the states of ControlsTest, SegmentsTest and PlaceListTest.
TEST(Contrast, of_what_only_a_pointer_a_press_or_another_window_brings) {
    namespace c = look::colours;
    const struct {
        QRgb text, ground;
        double least;
    } pairs[] = {
        {c::label, c::pushHover, enabledText},
        {c::label, c::pushPressed, enabledText},
        {c::white, c::prominentHover, enabledText},
        {c::white, c::prominentPressed, enabledText},
        {c::label, c::segmentHover, enabledText},
        {c::label, c::segmentPressed, enabledText},
        {c::labelOnWell, c::rowHover, enabledText},
        {c::secondaryOnWell, c::rowHover, enabledText},
        {c::label, c::selectionUnfocused, enabledText},
        {c::selectionUnfocusedDetail, c::selectionUnfocused, enabledText},
        {c::white, c::selection, enabledText},
        {c::selectionDetail, c::selection, enabledText},
        {c::labelOnWell, c::well, enabledText},
        {c::tertiaryOnWell, c::well, enabledText},
        {c::secondary, c::fieldReadOnly, enabledText},
        {c::tertiary, c::fieldReadOnly, enabledText},
        {c::disabledText, c::fieldDisabled, disabledText},
        {c::disabledText, c::selectionDisabled, disabledText},
        {c::white, c::prominent, disabledText}, // the check box's tick
        {c::pillDisabledText, c::pillDisabled, disabledText},
    };
    for (const auto& [text, ground, least] : pairs)
        EXPECT_GE(contrast(text, ground), least) << hex(text) << " on " << hex(ground);
}

// The reading itself: its colours are those that were painted, at the smallest size and weight.
TEST_F(ContrastTest, is_read_off_the_smallest_text) {
    QWidget ground;
    QPalette palette = ground.palette();
    palette.setColor(QPalette::Window, QColor(0xff28282b));
    ground.setPalette(palette);
    ground.resize(300, 40);
    for (const QRgb colour : {0xff818186, 0xff5a5a5a, 0xff28282b}) {
        look::Label label(11, colour, &ground);
        label.setText(u"Einmal laden, danach offline nutzen."_s);
        label.setGeometry(5, 5, 290, 14);
        const Reading found = read(pictureOf(&ground), label.geometry());
        EXPECT_EQ(found.ground, 0xff28282bU);
        EXPECT_EQ(found.text, colour);
    }
}

class ContrastInModeTest : public ContrastTest,
                           public testing::WithParamInterface<NXImportApp::Mode> {};

TEST_P(ContrastInModeTest, every_state_of_the_window) {
    const Mode mode = GetParam();
    start(mode);
    pointAtNothing();
    expectReadable(window(), "ready");
    geocoder.behave({{u"hang"_s, true}});
    search(u"Berlin"_s);
    expectReadable(window(), "searching");
    click(button("cancelButton"));
    expectReadable(window(), "cancelled");
    geocoder.reset();
    findPlaces(mode);
    list("table")->setFocus();
    expectReadable(window(), "chosen, the results have the focus");
    field("query")->setFocus();
    expectReadable(window(), "chosen, the search field has the focus");
    if (mode == Mode::Route) {
        clickStation(1);
        list("stationTable")->setFocus();
        expectReadable(window(), "a station is chosen");
    }
    importer->useScript("while :; do sleep 0.02; done");
    click(button("downloadButton"));
    expectReadable(window(), "importing");
    click(button("cancelButton"));
    expectReadable(window(), "stopping");
    ASSERT_EVENTUALLY(!isBusy());
    importer->useStandIn();
    click(button("downloadButton"));
    ASSERT_EVENTUALLY(!isBusy());
    expectReadable(window(), "done");
    importer->useScript("exit 1");
    click(button("downloadButton"));
    ASSERT_EVENTUALLY(alert() != nullptr);
    expectReadable(window(), "alert");
    closeAlert();
    ASSERT_TRUE(statusIsRed());
    expectReadable(window(), "failed");
    EXPECT_GT(measured_, 200);
    auto* failure = control<look::Label>("status");
    failure->setText(u"████"_s);
    EXPECT_EQ(failure->grab().toImage().pixel(12, 8), 0xffff6b61);
}

INSTANTIATE_TEST_SUITE_P(Modes, ContrastInModeTest,
                         testing::Values(NXImportApp::Mode::Place, NXImportApp::Mode::Route));

TEST_F(ContrastTest, disabled_lists_with_and_without_a_selection) {
    start(Mode::Route);
    findPlaces(Mode::Route);
    clickStation(0);
    for (const char* name : {"table", "stationTable"}) {
        list(name)->setEnabled(false);
        expectReadable(window(), name);
        list(name)->clearSelection();
        expectReadable(window(), name);
    }
}

TEST_F(ContrastTest, menus_of_the_menu_bar) {
    start();
    search(u"Berlin"_s);
    ASSERT_EVENTUALLY(!isBusy());
    for (QAction* action : window()->menuBar()->actions()) {
        SCOPED_TRACE(action->text().toStdString());
        expectMenu(action->menu());
        // The title under the pointer and with its menu open.
        window()->menuBar()->setActiveAction(action);
        settle();
        expectPart(pictureOf(window()), window()->menuBar(),
                   window()->menuBar()->actionGeometry(action), action->text());
        action->menu()->close();
        window()->menuBar()->setActiveAction(nullptr);
    }
}

TEST_F(ContrastTest, entries_of_a_menu_that_cannot_be_used) {
    start();
    QMenu menu(window());
    menu.addAction(u"Widerrufen"_s, QKeySequence(Qt::CTRL | Qt::Key_Z), qApp, [] {});
    QAction* disabled =
        menu.addAction(u"Wiederholen"_s, QKeySequence(Qt::CTRL | Qt::Key_Y), qApp, [] {});
    disabled->setEnabled(false);
    disabled->setCheckable(true);
    disabled->setChecked(true);
    expectMenu(&menu);
}

TEST_F(ContrastTest, tooltip) {
    start(Mode::Route);
    ASSERT_FALSE(toolTipAt(control("routeMapCheckbox"), QPoint(4, 4)).isEmpty());
    QWidget* tip = look::shownToolTip();
    expectReadable(pictureOf(tip), tip->rect().adjusted(6, 4, -6, -4), "tooltip", enabledText);
}

// Against the ground around it, and its two lines against each other, so that it is seen around
// blue as well.
TEST_F(ContrastTest, focus_ring) {
    start();
    const auto expectRing = [this](QWidget* control) {
        control->setFocus(Qt::TabFocusReason);
        settle();
        ASSERT_EQ(look::ringedControl(), control);
        const QImage picture = pictureOf(window());
        const auto at = [&](int distance) {
            return picture.pixel(control->mapTo(window(), QPoint(control->width() / 2, -distance)) *
                                 scale);
        };
        constexpr double leastOfShapes = 3;
        EXPECT_GE(contrast(at(3), at(5)), leastOfShapes) << hex(at(3)) << " on " << hex(at(5));
        EXPECT_EQ(at(2), at(3));
        EXPECT_NE(at(1), at(2));
    };
    QTest::keyClick(field("query"), Qt::Key_Tab);
    for (const char* name : {"searchButton", "query", "table", "radius", "languageButton"})
        expectRing(control(name));
    click(button("languageButton"));
    QTest::keyClick(alert()->findChild<look::PopUp*>(), Qt::Key_Tab);
    expectRing(alert()->otherButton());
    expectRing(alert()->prominentButton());
    alert()->reject();
    settle();
}

TEST_F(ContrastTest, language_dialog) {
    start();
    click(button("languageButton"));
    settle();
    look::Panel* dialog = alert();
    ASSERT_TRUE(dialog);
    expectReadable(window(), "dialog");
    dialog->reject();
    settle();
}

} // namespace
