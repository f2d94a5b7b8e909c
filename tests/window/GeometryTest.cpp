// Where everything stands: x, y, width x height on the window's content, in logical pixels.

#include "WindowTest.h"
#include "look/controls/Glyphs.h"

namespace {

constexpr QSize natural(820, 760);
constexpr QSize least(780, 730);

class GeometryTest : public WindowTest {
protected:
    // Opens the window with a content of this size.
    void startAt(Mode mode, QSize content) {
        start(mode);
        resizeContent(content);
    }

    // The label of this text: the title, or the caption before a control of the same row.
    QRect caption(const QString& text) const {
        for (const look::Label* label : window()->findChildren<look::Label*>())
            if (label->text() == text)
                return place(label);
        return {};
    }

    void expectHeaderAndSearch(int lessWidth) {
        EXPECT_EQ(place(window()->findChild<look::BuildingGlyph*>()), QRect(22, 23, 34, 34));
        EXPECT_EQ(caption(u"Norvaxel 3D"_s).topLeft(), QPoint(66, 16));
        EXPECT_EQ(caption(u"Norvaxel 3D"_s).height(), 31);
        EXPECT_EQ(place("subtitle").topLeft(), QPoint(66, 49));
        EXPECT_EQ(place("subtitle").height(), 16);
        EXPECT_EQ(place("mode"), QRect(22, 75, 204, 30));
        EXPECT_EQ(place("query"), QRect(22, 115, 658 - lessWidth, 34));
        EXPECT_EQ(place("searchButton"), QRect(690 - lessWidth, 116, 108, 32));
        EXPECT_EQ(place("hint"), QRect(22, 159, 776 - lessWidth, 15));
    }

    void expectBottom(int buttonsTop, int lessWidth) {
        EXPECT_EQ(place("status"), QRect(22, buttonsTop - 58, 776 - lessWidth, 48));
        EXPECT_EQ(place("languageButton").topLeft(), QPoint(22, buttonsTop));
        EXPECT_EQ(place("languageButton").height(), 32);
        const QRect prominent = place("downloadButton");
        EXPECT_EQ(prominent.top(), buttonsTop);
        EXPECT_EQ(prominent.height(), 32);
        EXPECT_EQ(prominent.x() + prominent.width(), 798 - lessWidth);
        EXPECT_GE(prominent.width(), 148);
        EXPECT_EQ(place("credit").topLeft(), QPoint(22, buttonsTop + 42));
        EXPECT_EQ(place("credit").height(), 28);
    }
};

// The screen of these tests is narrower than the window.
TEST_F(GeometryTest, on_a_screen_too_small_the_end_is_cut_and_never_the_title_bar) {
    start();
    const QRect available = window()->screen()->availableGeometry();
    ASSERT_LT(available.width(), window()->width());
    EXPECT_EQ(window()->pos().x(), available.left());
    EXPECT_GE(window()->pos().y(), available.top());
    const QPoint middle = window()->pos() + window()->rect().center();
    EXPECT_NEAR(middle.y(), available.center().y(), 1) << "there is room";
}

TEST_F(GeometryTest, place_mode) {
    for (const QSize size : {natural, least}) {
        SCOPED_TRACE(size.width());
        const int less = natural.width() - size.width();
        startAt(Mode::Place, size);
        expectHeaderAndSearch(less);
        EXPECT_EQ(place("table"), QRect(22, 184, 776 - less, 250));
        const QRect radiusCaption = caption(u"Umkreis"_s);
        EXPECT_EQ(radiusCaption.x(), 22);
        EXPECT_EQ(place("radius"),
                  QRect(radiusCaption.x() + radiusCaption.width() + 10, 444, 102, 28));
        EXPECT_EQ(place("endpoint"), QRect(580 - less, 444, 218, 28));
        const QRect serviceCaption = caption(u"Datendienst"_s);
        EXPECT_EQ(serviceCaption.x() + serviceCaption.width(), 570 - less);
        EXPECT_EQ(place("endpointField"), QRect(22, 482, 776 - less, 24));
        expectBottom(574, less);
        end();
    }
}

TEST_F(GeometryTest, route_mode) {
    for (const QSize size : {natural, least}) {
        SCOPED_TRACE(size.width());
        const int less = natural.width() - size.width();
        const int column = size == least ? 363 : 383;
        startAt(Mode::Route, size);
        expectHeaderAndSearch(less);
        EXPECT_EQ(place("table"), QRect(22, 184, column, 250));
        EXPECT_EQ(place("routePane"), QRect(32 + column, 184, column, 250));
        EXPECT_EQ(place("stationTable"), QRect(32 + column, 222, column, 174));
        const QRect add = place("addStationButton");
        EXPECT_EQ(add.y(), 188);
        EXPECT_EQ(add.height(), 24);
        EXPECT_EQ(add.x() + add.width(), 798 - less);
        const QRect counter = place("stationHint");
        EXPECT_EQ(counter.x(), 32 + column);
        EXPECT_NEAR(counter.center().y(), add.center().y(), 1);
        QRect before(32 + column - 6, 402, 0, 32);
        for (const char* name :
             {"removeStationButton", "moveStationUpButton", "moveStationDownButton"}) {
            const QRect here = place(name);
            EXPECT_EQ(here.topLeft(), QPoint(before.x() + before.width() + 6, 402)) << name;
            EXPECT_EQ(here.height(), 32) << name;
            before = here;
        }
        const QRect travelCaption = caption(u"Reiseart"_s);
        EXPECT_EQ(travelCaption.x(), 22);
        EXPECT_EQ(place("travel"),
                  QRect(travelCaption.x() + travelCaption.width() + 10, 444, 142, 24));
        const QRect box = place("routeMapCheckbox");
        EXPECT_EQ(box.x() + box.width(), 798 - less);
        EXPECT_NEAR(box.center().y(), place("travel").center().y(), 1);
        EXPECT_EQ(place("routeEndpointField"), QRect(22, 472, 776 - less, 26));
        expectBottom(566, less);
        end();
    }
}

TEST_F(GeometryTest, the_routing_caption_alone_gives_way_in_its_row) {
    startAt(Mode::Route, least);
    control<QCheckBox>("routeMapCheckbox")->setText(QString(60, u'm'));
    settle();
    QStringList elided;
    for (const look::Label* label : control("routeOptions")->findChildren<look::Label*>())
        if (!label->elidedText().isEmpty())
            elided += label->text();
    EXPECT_EQ(elided, QStringList(u"Routingdienst · eigene HTTPS-Adresse optional"_s));
}

TEST_F(GeometryTest, a_dialog_lies_in_the_middle_of_the_content) {
    for (const QSize size : {natural, least}) {
        startAt(Mode::Place, size);
        click(button("languageButton"));
        EXPECT_EQ(place(alert()),
                  QRect((size.width() - 348) / 2, (size.height() - 233) / 2, 348, 233));
        alert()->reject();
        settle();
        end();
    }
}

TEST_F(GeometryTest, the_longest_alert_keeps_to_the_smallest_window) {
    startAt(Mode::Place, least);
    window()->showAlert(u"Titel "_s.repeated(1000), u"Wort "_s.repeated(10000), u"OK"_s);
    settle();
    EXPECT_EQ(window()->centralWidget()->size(), least);
    EXPECT_TRUE(QRect(QPoint(12, 12), least - QSize(24, 24)).contains(place(alert())));
    EXPECT_TRUE(place(alert()).contains(place(alert()->prominentButton())));
    closeAlert();
}

// The captions decide where the controls behind them stand.
TEST_F(GeometryTest, captions_are_as_wide_as_their_text) {
    start();
    for (const QString& text : {u"Umkreis"_s, u"Datendienst"_s}) {
        QFont font = window()->font();
        font.setPixelSize(12);
        EXPECT_NEAR(caption(text).width(), QFontMetricsF(font).horizontalAdvance(text), 1.0);
    }
}

TEST_F(GeometryTest, hidden_controls_leave_no_gap_when_the_mode_changes) {
    startAt(Mode::Place, natural);
    chooseMode(1);
    settle();
    EXPECT_EQ(place("routeEndpointField"), QRect(22, 472, 776, 26));
    expectBottom(566, 0);
    chooseMode(0);
    settle();
    EXPECT_EQ(place("table"), QRect(22, 184, 776, 250));
    EXPECT_EQ(place("endpointField"), QRect(22, 482, 776, 24));
    expectBottom(574, 0);
}

TEST_F(GeometryTest, more_width_goes_to_the_fields_and_lists_and_more_height_below_the_credit) {
    startAt(Mode::Route, natural);
    QMap<QString, QRect> before;
    const QStringList fixed{u"mode"_s, u"travel"_s, u"languageButton"_s};
    for (const QString& name : fixed)
        before[name] = place(qPrintable(name));
    window()->resize(window()->size() + QSize(201, 150));
    settle();
    for (const QString& name : fixed)
        EXPECT_EQ(place(qPrintable(name)), before[name]) << name.toStdString();
    EXPECT_EQ(place("query"), QRect(22, 115, 859, 34));
    EXPECT_NEAR(place("table").width(), place("routePane").width(), 1);
    EXPECT_EQ(place("routePane").right(), 998);
    EXPECT_EQ(place("table").height(), 250);
    EXPECT_EQ(place("routeEndpointField"), QRect(22, 472, 977, 26));
    EXPECT_EQ(place("credit").topLeft(), QPoint(22, 608));
    EXPECT_EQ(place("credit").height(), 28);
}

TEST_F(GeometryTest, the_empty_lists_text_is_in_the_middle_of_the_list) {
    startAt(Mode::Place, natural);
    const QRect middle = place("placeholder");
    EXPECT_NEAR(middle.center().x(), place("table").center().x(), 1);
    EXPECT_NEAR(middle.center().y(), place("table").center().y(), 1);
    EXPECT_LE(middle.width(), place("table").width() - 24);
    chooseMode(1);
    settle();
    EXPECT_NEAR(place("placeholder").center().x(), place("table").center().x(), 1);
    EXPECT_LE(place("placeholder").width(), place("table").width() - 24);
}

TEST_F(GeometryTest, a_status_of_three_lines_moves_nothing) {
    startAt(Mode::Place, natural);
    auto* status = control<look::Label>("status");
    for (const QString& message :
         {QString(), QString(u"Ein Satz. "_s).repeated(10), QString(u"Ein Satz. "_s).repeated(200),
          QString(u"a\nb\nc\nd"_s)}) {
        status->setText(message);
        settle();
        EXPECT_EQ(place(status), QRect(22, 516, 776, 48));
        expectBottom(574, 0);
    }
    EXPECT_TRUE(status->isElided());
    status->setText(u"a\nb\nc"_s);
    EXPECT_FALSE(status->isElided());
}

} // namespace
