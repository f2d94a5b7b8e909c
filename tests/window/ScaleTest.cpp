// The window at the scale that FIT_SCALE names: every edge lies on whole device pixels, nothing is
// cut off, and nothing stands elsewhere than at scale 1. What was measured is left as pictures in
// the folder that FIT_PICTURES names. Pictures are what really reached the screen.

#include "SearchWindowTest.h"
#include "localization/NXLocal.h"
#include "look/controls/Glyphs.h"
#include "look/style/Colours.h"
#include "look/style/ToolTip.h"
#include "look/text/LiteralText.h"

#include <QBackingStore>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>

#include <cmath>

using namespace localization;

const ProgramLanguage programLanguage{"de", "de"};

namespace {

double scale() {
    static const double wanted = qEnvironmentVariable("FIT_SCALE", u"1"_s).toDouble();
    return wanted;
}

// Where a logical coordinate lies in device pixels.
int device(double logical) {
    return int(std::round(logical * scale()));
}

// The device pixels that an area fills.
QRect device(const QRect& area) {
    return {QPoint(device(area.left()), device(area.top())),
            QPoint(device(area.left() + area.width()) - 1, device(area.top() + area.height()) - 1)};
}

// One logical pixel's line.
int lineWidth() {
    return std::max(1, int(scale()));
}

// The painter counts in fractions of a pixel: two of 255 are no blur.
bool isClose(QRgb one, QRgb other) {
    return qAbs(qRed(one) - qRed(other)) <= 2 && qAbs(qGreen(one) - qGreen(other)) <= 2 &&
           qAbs(qBlue(one) - qBlue(other)) <= 2;
}

// What a window has sent to the screen, in device pixels.
QImage onScreen(QWidget* window) {
    settle();
    const QPaintDevice* sent = window->backingStore()->paintDevice();
    if (sent->devType() != QInternal::Image)
        throw std::runtime_error("this screen is no picture");
    QImage picture = *static_cast<const QImage*>(sent);
    picture.setDevicePixelRatio(1);
    return picture.convertToFormat(QImage::Format_ARGB32);
}

// The colours of a line from one point to another, each once, with how many pixels they fill.
struct Stretch {
    QRgb colour;
    int length;
};

std::vector<Stretch> stretches(const QImage& picture, QPoint from, QPoint to) {
    std::vector<Stretch> found;
    const QPoint way = to - from;
    const int steps = std::max(qAbs(way.x()), qAbs(way.y()));
    for (int i = 0; i <= steps; ++i) {
        const QPoint here = from + way * i / std::max(steps, 1);
        if (!picture.valid(here))
            continue;
        const QRgb colour = picture.pixel(here);
        if (found.empty() || !isClose(found.back().colour, colour))
            found.push_back({colour, 1});
        else
            ++found.back().length;
    }
    return found;
}

std::string describe(const std::vector<Stretch>& found) {
    std::string text;
    for (const Stretch& run : found)
        text += hex(run.colour) + " x " + std::to_string(run.length) + "  ";
    return text;
}

// What an edge consists of from the outside inwards.
struct Edge {
    QRgb outside;
    QRgb line;
    QRgb inside;
};

// A way over each side of an area, in its middle: from outside inwards. All in device pixels.
struct Crossing {
    std::string side;
    QPoint from;
    QPoint to;
};

std::array<Crossing, 4> crossings(const QRect& edges, int inwards) {
    const int x = edges.center().x();
    const int y = edges.center().y();
    const int out = device(2);
    return {{{"left", {edges.left() - out, y}, {edges.left() + inwards, y}},
             {"right", {edges.right() + out, y}, {edges.right() - inwards, y}},
             {"top", {x, edges.top() - out}, {x, edges.top() + inwards}},
             {"bottom", {x, edges.bottom() + out}, {x, edges.bottom() - inwards}}}};
}

QRect inWindow(const QWidget* widget) {
    return {widget->mapTo(widget->window(), QPoint()), widget->size()};
}

class ScaleTest : public SearchWindowTest {
protected:
    // The four sides of a bordered rectangle, each measured in its middle.
    static void expectBorder(const QImage& picture, const QRect& area, const Edge& edge,
                             const std::string& what) {
        // Inwards not far: a row's highlight starts at 3.
        for (const Crossing& each : crossings(device(area), device(2) - 1))
            expectEdge(picture, each.from, each.to, edge, what + ' ' + each.side);
    }

    // From outside inwards: the ground, a line of the right width, the fill, and nothing between.
    static void expectEdge(const QImage& picture, QPoint from, QPoint to, const Edge& edge,
                           const std::string& what) {
        const std::vector<Stretch> found = stretches(picture, from, to);
        const bool isSharp = found.size() == 3 && isClose(found[0].colour, edge.outside) &&
                             found[0].length == device(2) && isClose(found[1].colour, edge.line) &&
                             found[1].length == lineWidth() &&
                             isClose(found[2].colour, edge.inside);
        EXPECT_TRUE(isSharp) << what << ": " << describe(found);
    }

    // A button's face: filled to its edge, lit at the top only.
    static void expectFace(const QImage& picture, const QRect& area, const std::string& what) {
        for (const Crossing& each : crossings(device(area), device(4))) {
            const bool isTop = each.side == "top";
            const std::vector<Stretch> found = stretches(picture, each.from, each.to);
            ASSERT_EQ(found.size(), isTop ? 3U : 2U)
                << what << ' ' << each.side << ": " << describe(found);
            EXPECT_EQ(found.front().length, device(2))
                << what << ' ' << each.side << ": " << describe(found);
            EXPECT_TRUE(!isTop || found[1].length == lineWidth())
                << what << ": " << describe(found);
        }
    }

    // All borders and faces of the window, of which no control has a ring.
    void expectSharp(const std::string& state) {
        SCOPED_TRACE(state);
        namespace c = look::colours;
        button("languageButton")->setFocus(Qt::MouseFocusReason);
        const QImage picture = onScreen(window());
        for (const look::Field* field : shown<look::Field>(window())) {
            const Edge edge =
                !field->isEnabled()   ? Edge{c::window, c::borderDisabled, c::fieldDisabled}
                : field->isReadOnly() ? Edge{c::window, c::borderReadOnly, c::fieldReadOnly}
                                      : Edge{c::window, c::border, c::well};
            expectBorder(picture, inWindow(field), edge, field->objectName().toStdString());
        }
        for (const look::PlaceList* list : shown<look::PlaceList>(window())) {
            const Edge edge{c::window, list->isEnabled() ? c::border : c::borderDisabled, c::well};
            expectBorder(picture, inWindow(list), edge, list->objectName().toStdString());
        }
        for (const look::Button* each : shown<look::Button>(window()))
            expectFace(picture, inWindow(each), each->title().toStdString());
        for (const look::PopUp* each : shown<look::PopUp>(window()))
            expectFace(picture, inWindow(each), each->objectName().toStdString());
        for (const QCheckBox* box : shown<QCheckBox>(window())) {
            const QRect row = inWindow(box);
            const QRect square(row.left(), row.top() + (row.height() - 14) / 2, 14, 14);
            EXPECT_LE(stretches(picture,
                                {device(square.left()) - device(2), device(square.top() + 3.5)},
                                {device(square.left()) + device(2), device(square.top() + 3.5)})
                          .size(),
                      3U)
                << "check box";
        }
    }

    // The flat feet of letters: the last row of them has the whole colour, the next has nothing.
    void expectBaseline(QWidget* widget, const QRect& part, const char* what) {
        const QImage picture = onScreen(widget->window());
        const QRect area = device(part.translated(inWindow(widget).topLeft()));
        const QRgb ground = picture.pixel(area.topLeft());
        const QRgb ink = extreme(picture, area);
        int last = -1;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x)
                if (!isClose(picture.pixel(x, y), ground))
                    last = y;
        }
        ASSERT_GT(last, area.top()) << what << ": no text";
        int full = 0;
        for (int x = area.left(); x <= area.right(); ++x)
            full += isClose(picture.pixel(x, last), ink);
        EXPECT_GE(full, int(8 * scale())) << what << ": the baseline is blurred";
    }

    // The rows around a label hold nothing that the label itself has not shown.
    void expectWholeLetters(look::Label* label) {
        const QImage picture = onScreen(window());
        QImage freely = picture;
        freely.fill(look::colours::window);
        QPainter painter(&freely);
        painter.scale(scale(), scale());
        const QRect area = inWindow(label);
        const QRgb ink = look::colours::white;
        if (label->height() > 20) {
            look::TextBlock(label->text(), label->font(), area.width(), 3, Qt::LeftToRight,
                            Qt::AlignLeft)
                .draw(painter, area.topLeft(), ink);
        } else {
            look::drawLine(painter, area, look::fitLine(label->text(), label->font(), area.width()),
                           label->font(), ink, Qt::AlignLeft, Qt::LeftToRight);
        }
        painter.end();
        // Half a tone is the rim of a letter.
        const int half = (qGray(ink) + qGray(look::colours::window)) / 2;
        const QRect own = device(area);
        for (int y : {own.top() - 2, own.top() - 1, own.bottom() + 1, own.bottom() + 2}) {
            for (int x = own.left(); x <= own.right(); ++x) {
                if (qGray(freely.pixel(x, y)) > half) {
                    ADD_FAILURE() << label->text().toStdString() << " at " << area.top() << ": "
                                  << (y < area.center().y() * scale() ? "head" : "tail")
                                  << " is cut";
                    return;
                }
            }
        }
    }

    // The colour farthest from the ground.
    static QRgb extreme(const QImage& picture, const QRect& area) {
        const QRgb ground = picture.pixel(area.topLeft());
        QRgb found = ground;
        for (int y = area.top(); y <= area.bottom(); ++y) {
            for (int x = area.left(); x <= area.right(); ++x) {
                const QRgb here = picture.pixel(x, y);
                if (qAbs(qGray(here) - qGray(ground)) > qAbs(qGray(found) - qGray(ground)))
                    found = here;
            }
        }
        return found;
    }

    void expectNothingIsCut() {
        const QRect content = window()->centralWidget()->rect().adjusted(22, 16, -22, 0);
        for (const look::Label* label : shown<look::Label>(window())) {
            // The one caption that the design lets give way.
            const bool mayGiveWay =
                label->text() == NXLocal(u"Routingdienst · eigene HTTPS-Adresse optional"_s);
            EXPECT_TRUE(mayGiveWay || !label->isElided()) << label->text().toStdString();
            EXPECT_TRUE(content.contains(place(label))) << label->text().toStdString();
        }
        for (const look::Button* each : shown<look::Button>(window())) {
            EXPECT_FALSE(each->isElided()) << each->title().toStdString();
            EXPECT_TRUE(content.contains(place(each))) << each->title().toStdString();
        }
        for (const look::PopUp* each : shown<look::PopUp>(window()))
            EXPECT_FALSE(each->isElided()) << each->currentText().toStdString();
        for (look::Segments* each : shown<look::Segments>(window()))
            EXPECT_GE(each->width(), each->sizeHint().width());
        for (const QCheckBox* each : shown<QCheckBox>(window()))
            EXPECT_GE(each->width(), each->sizeHint().width());
    }

    static void keep(const QImage& picture, const QString& name) {
        const QString folder = qEnvironmentVariable("FIT_PICTURES");
        if (folder.isEmpty())
            return;
        ASSERT_TRUE(QDir().mkpath(folder));
        const QString file = u"%1-%2.png"_s.arg(QString::number(scale()), name);
        ASSERT_TRUE(picture.save(QDir(folder).filePath(file)));
    }
};

class ScaleInModeTest : public ScaleTest, public testing::WithParamInterface<NXImportApp::Mode> {
protected:
    static QString mode() { return GetParam() == Mode::Route ? u"route"_s : u"place"_s; }
};

TEST_P(ScaleInModeTest, edges_lie_on_whole_device_pixels) {
    start(GetParam());
    ASSERT_EQ(window()->devicePixelRatio(), scale());
    ASSERT_EQ(onScreen(window()).size(),
              QSize(device(window()->width()), device(window()->height())));
    expectSharp("idle");
    keep(onScreen(window()), mode() + u"-idle"_s);
    findPlaces(GetParam());
    QTest::mouseMove(window()->centralWidget(), QPoint(3, 700)); // on nothing
    expectSharp("places");
    keep(onScreen(window()), mode() + u"-places"_s);
    importer->useScript("while :; do sleep 0.02; done");
    click(button("downloadButton"));
    expectSharp("importing");
    keep(onScreen(window()), mode() + u"-importing"_s);
    click(button("cancelButton"));
    ASSERT_EVENTUALLY(!isBusy());
}

// Wherever the controls come to lie when the window grows: an odd place is as sharp as an even one.
TEST_P(ScaleInModeTest, edges_are_sharp_at_every_size) {
    start(GetParam());
    for (int more = 1; more <= 7; more += 2) {
        window()->resize(window()->size() + QSize(1, 1));
        expectSharp(std::to_string(more));
    }
}

TEST_P(ScaleInModeTest, nothing_is_cut_off_and_everything_is_in_its_place) {
    start(GetParam());
    EXPECT_EQ(window()->centralWidget()->size(), QSize(820, 760));
    EXPECT_EQ(place("query"), QRect(22, 115, 658, 34));
    EXPECT_EQ(place("status").height(), 48);
    EXPECT_EQ(place("downloadButton").right(), 797);
    EXPECT_EQ(place("credit").height(), 28);
    EXPECT_EQ(place("table").size(), QSize(GetParam() == Mode::Route ? 383 : 776, 250));
    expectNothingIsCut();
    findPlaces(GetParam());
    expectNothingIsCut();
    window()->resize(window()->minimumSizeHint());
    settle();
    expectNothingIsCut();
    keep(onScreen(window()), mode() + u"-least"_s);
}

INSTANTIATE_TEST_SUITE_P(Modes, ScaleInModeTest,
                         testing::Values(NXImportApp::Mode::Place, NXImportApp::Mode::Route));

TEST_F(ScaleTest, baselines_stand_on_whole_device_pixels) {
    start();
    for (const char* name : {"subtitle", "hint", "status"}) {
        auto* label = control<look::Label>(name);
        label->setText(u"EEEE EZEZ LELE"_s);
        settle();
        expectBaseline(label, QRect(0, 0, 120, qMin(label->height(), 16)), name);
    }
    look::Button* language = button("languageButton");
    language->setTitle(u"ELZE ELZE"_s);
    settle();
    expectBaseline(language, language->rect().adjusted(8, 4, -8, -4), "button");
    field("query")->setText(u"ELZE ELZE"_s);
    language->setFocus(Qt::MouseFocusReason);
    settle();
    expectBaseline(field("query"), QRect(11, 5, 120, 24), "field");
}

// Letters end where their line ends, above and below: drawn freely, the same text has no more.
TEST_F(ScaleTest, no_letter_loses_its_head_or_its_tail) {
    for (const QString& family : {QApplication::font().family(), QString(u"Inter"_s)}) {
        SCOPED_TRACE(family.toStdString());
        const QFont usual = QApplication::font();
        QFont asked = usual;
        asked.setFamily(family);
        QApplication::setFont(asked);
        for (const Mode mode : {Mode::Place, Mode::Route}) {
            start(mode);
            for (look::Label* label : shown<look::Label>(window())) {
                // The title is a name that has no tail.
                if (label->objectName() == u"placeholder"_s || label->height() == 31)
                    continue;
                QStringList text(label->height() > 20 ? label->height() / 14 : 1);
                text.fill(u"Ägypten (jung)"_s);
                label->setText(text.join(u'\n'));
                settle();
                expectWholeLetters(label);
            }
            end();
        }
        QApplication::setFont(usual);
    }
}

TEST_F(ScaleTest, the_building_is_drawn_at_the_screens_resolution) {
    start();
    auto* glyph = window()->findChild<look::BuildingGlyph*>();
    const QImage picture = onScreen(window());
    const QRect area = inWindow(glyph);
    // Through the walls and two rows of panes: between two colours at most one pixel is a mixture.
    for (const double y : {7.5, 16.5, 19.5}) {
        const int row = device(area.top() + y);
        int mixed = 0;
        for (int x = device(area.left()) - 2; x <= device(area.left() + area.width()) + 2; ++x) {
            const QRgb here = picture.pixel(x, row);
            const bool isPure =
                isClose(here, look::colours::blue) || isClose(here, look::colours::window);
            mixed = isPure ? 0 : mixed + 1;
            EXPECT_LE(mixed, 1) << "row " << y << ", pixel " << x;
        }
    }
}

TEST_F(ScaleTest, a_ring_is_sharp_on_both_sides) {
    start(Mode::Route);
    for (const char* name : {"query", "table", "routeEndpointField"}) {
        auto* ringed = control(name);
        if (auto* asField = qobject_cast<look::Field*>(ringed))
            asField->setCursorPosition(0);
        ringed->setFocus(Qt::TabFocusReason);
        const QImage picture = onScreen(window());
        const QRect area = inWindow(ringed);
        const int middle = device(area.center().x());
        const QRect edges = device(area);
        const std::vector<Stretch> above =
            stretches(picture, {middle, device(area.top() - 3) - device(2)},
                      {middle, edges.top() + device(3)});
        ASSERT_EQ(above.size(), 5U) << name << ": " << describe(above);
        EXPECT_TRUE(isClose(above[1].colour, look::colours::focusRing)) << describe(above);
        EXPECT_TRUE(isClose(above[2].colour, look::colours::focusRingInner)) << describe(above);
        EXPECT_EQ(above[1].length, device(area.top() - 1) - device(area.top() - 3))
            << describe(above);
        EXPECT_EQ(above[2].length, edges.top() - device(area.top() - 1)) << describe(above);
        EXPECT_EQ(above[3].length, lineWidth()) << describe(above);
        const int end = device(area.top() + area.height() + 3) - 1;
        const std::vector<Stretch> below =
            stretches(picture, {middle, end + device(2)}, {middle, edges.bottom() - device(3)});
        ASSERT_EQ(below.size(), 5U) << name << ": " << describe(below);
        EXPECT_EQ(below[1].length + below[2].length, end - edges.bottom()) << describe(below);
    }
}

// As high as its texts make it: its last line must not fall off the last pixel.
void expectWindowBorder(QWidget* shown, QRgb line, QRgb fill, const char* what) {
    // The widget alone: a way begins at its first pixel.
    const QImage picture = onScreen(shown->window()).copy(device(inWindow(shown)));
    for (const Crossing& each : crossings(picture.rect(), device(4))) {
        const std::vector<Stretch> found = stretches(picture, each.from, each.to);
        const bool isSharp = found.size() == 2 && isClose(found[0].colour, line) &&
                             found[0].length == lineWidth() && isClose(found[1].colour, fill);
        EXPECT_TRUE(isSharp) << what << ' ' << each.side << ": " << describe(found);
    }
}

TEST_F(ScaleTest, dialogs_menus_and_tooltips_are_sharp_to_their_last_pixel) {
    namespace c = look::colours;
    start(Mode::Route);
    toolTipAt(control("travel"), QPoint(4, 4));
    expectWindowBorder(look::shownToolTip(), c::toolTipOutline, c::toolTip, "tooltip");
    keep(onScreen(look::shownToolTip()), u"tooltip"_s);
    look::hideToolTip();
    for (const QAction* action : window()->menuBar()->actions()) {
        action->menu()->popup(window()->mapToGlobal(QPoint(30, 30)));
        expectWindowBorder(action->menu(), c::panelOutline, c::panel, "menu");
        keep(onScreen(action->menu()), u"menu"_s);
        action->menu()->close();
    }
    click(button("languageButton"));
    settle();
    expectWindowBorder(alert(), c::panelOutline, c::panel, "language dialog");
    keep(onScreen(window()), u"language"_s);
    alert()->reject();
    settle();
    window()->showAlert(u"Ein Titel"_s,
                        QString(u"Eine Mitteilung über mehrere Zeilen. "_s).repeated(4), u"OK"_s);
    settle();
    expectWindowBorder(alert(), c::panelOutline, c::panel, "alert");
    keep(onScreen(window()), u"alert"_s);
    alert()->accept();
    settle();
}

} // namespace
