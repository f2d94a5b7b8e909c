// The window as it opens, in German: what is there, what it says and what can be used.

#include "WindowTest.h"
#include "look/style/Colours.h"

#include <QLineEdit>
#include <QMenuBar>

const ProgramLanguage programLanguage{"de", ""};

namespace {

using StartTest = WindowTest;

const QString startCredit =
    u"Photon · OpenStreetMap-Daten (ODbL) · Terrain Tiles (AWS)\nEinmal laden, danach offline in Norvaxel 3D nutzen. Der Umkreis begrenzt den Ausschnitt."_s;
const QString routeCredit =
    u"Photon · OSRM · OpenFreeMap / OpenMapTiles · Terrain Tiles (AWS) · OpenStreetMap-Daten (ODbL)\nInternet erforderlich · lange Strecken laden einige Minuten · das Norvaxel-3D-Paket rendert offline."_s;

QStringList items(const QComboBox& popUp) {
    QStringList all;
    for (int i = 0; i < popUp.count(); ++i)
        all += popUp.itemText(i);
    return all;
}

QStringList titles(const QList<QRadioButton*>& segments) {
    QStringList all;
    for (const QRadioButton* segment : segments)
        all += segment->text();
    return all;
}

TEST_F(StartTest, the_cursor_starts_in_the_search_field) {
    for (const Mode mode : {Mode::Place, Mode::Route}) {
        start(mode);
        EXPECT_TRUE(field("query")->hasFocus());
        QTest::keyClicks(QApplication::focusWidget(), u"Ulm"_s);
        EXPECT_EQ(field("query")->text(), u"Ulm"_s);
        end();
    }
}

TEST_F(StartTest, both_modes_have_the_same_texts_above_their_options) {
    for (const Mode mode : {Mode::Place, Mode::Route}) {
        start(mode);
        EXPECT_EQ(window()->windowTitle(), u"Norvaxel 3D · Orte und Routen"_s);
        QStringList labels;
        for (const look::Label* label : window()->findChildren<look::Label*>())
            labels += label->text();
        EXPECT_TRUE(labels.contains(u"Norvaxel 3D"_s));
        EXPECT_EQ(titles(segments("mode")), QStringList({u"Ortskarte"_s, u"Route"_s}));
        EXPECT_EQ(field("query")->text(), QString());
        EXPECT_EQ(field("query")->placeholderText(), u"Stadt, Ort oder Adresse weltweit"_s);
        EXPECT_EQ(button("searchButton")->title(), u"Suchen"_s);
        EXPECT_EQ(button("searchButton")->glyph(), look::ButtonGlyph::Magnifier);
        EXPECT_EQ(text("hint"), says::firstHint);
        EXPECT_EQ(text("placeholder"), u"Ergebnisse erscheinen nach der Suche"_s);
        EXPECT_TRUE(control("placeholder")->isVisible());
        EXPECT_EQ(list("table")->model()->rowCount(), 0);
        EXPECT_EQ(button("cancelButton")->title(), u"Abbrechen"_s);
        EXPECT_EQ(button("finderButton")->title(), u"Ordner zeigen"_s);
        EXPECT_EQ(button("languageButton")->title(), u"Sprache"_s);
        EXPECT_EQ(button("languageButton")->toolTip(), u"Sprache auswählen und lokal speichern"_s);
        EXPECT_TRUE(control("cancelButton")->isHidden());
        EXPECT_TRUE(control("finderButton")->isHidden());
        EXPECT_TRUE(control("spinner")->isHidden());
        EXPECT_FALSE(control<look::Spinner>("spinner")->isTurning());
        EXPECT_EQ(button("downloadButton")->kind(), look::ButtonKind::Prominent);
        EXPECT_FALSE(control("downloadButton")->isEnabled());
        EXPECT_FALSE(statusIsRed());
        for (const char* name : {"mode", "query", "searchButton", "table", "languageButton"})
            EXPECT_TRUE(control(name)->isEnabled()) << name;
        end();
    }
}

TEST_F(StartTest, texts_have_their_size_weight_and_colour) {
    namespace c = look::colours;
    const struct {
        Mode mode;
        QString label; // by its name or else its text
        int pixels;
        QRgb colour;
    } rows[] = {
        {Mode::Place, u"Norvaxel 3D"_s, 26, c::label},
        {Mode::Place, u"subtitle"_s, 13, c::secondary},
        {Mode::Place, u"hint"_s, 12, c::secondary},
        {Mode::Place, u"Umkreis"_s, 12, c::secondary},
        {Mode::Place, u"Datendienst"_s, 12, c::secondary},
        {Mode::Place, u"status"_s, 12, c::secondary},
        {Mode::Place, u"credit"_s, 11, c::tertiary},
        {Mode::Route, u"stationHint"_s, 12, c::secondary},
        {Mode::Route, u"Reiseart"_s, 11, c::secondary},
        {Mode::Route, u"Routingdienst · eigene HTTPS-Adresse optional"_s, 11, c::secondary},
    };
    for (const auto& [mode, name, pixels, colour] : rows) {
        SCOPED_TRACE(name.toStdString());
        start(mode);
        look::Label* label = nullptr;
        for (look::Label* each : window()->findChildren<look::Label*>())
            if (each->objectName() == name || each->text() == name)
                label = each;
        ASSERT_TRUE(label);
        EXPECT_EQ(label->font().pixelSize(), pixels);
        EXPECT_EQ(label->font().weight(), pixels == 26 ? QFont::DemiBold : QFont::Normal);
        label->setText(u"████"_s);
        const QImage picture = label->grab().toImage();
        EXPECT_EQ(picture.pixel(pixels, pixels * 2 / 3), colour);
        end();
    }
}

TEST_F(StartTest, without_an_argument_the_window_opens_in_place_mode) {
    start(Mode::Place);
    EXPECT_EQ(control<look::Segments>("mode")->selectedSegment(), 0);
    EXPECT_TRUE(segments("mode").at(0)->isChecked());
    EXPECT_FALSE(segments("mode").at(1)->isChecked());
    for (const char* name : {"mapOptions", "radius", "endpoint", "endpointField"})
        EXPECT_TRUE(control(name)->isVisible()) << name;
    for (const char* name : {"routePane", "routeOptions", "travel", "routeEndpointField"})
        EXPECT_FALSE(control(name)->isVisible()) << name;
    EXPECT_EQ(text("subtitle"), u"Ortsdaten mit Gebäuden und Gelände für Norvaxel 3D"_s);
    EXPECT_EQ(text("credit"), startCredit);
    EXPECT_EQ(status(), says::ready);
    EXPECT_EQ(button("downloadButton")->title(), u"Ortsdaten laden"_s);
}

TEST_F(StartTest, with_its_argument_the_window_opens_in_route_mode) {
    start(Mode::Route);
    EXPECT_EQ(control<look::Segments>("mode")->selectedSegment(), 1);
    EXPECT_FALSE(segments("mode").at(0)->isChecked());
    EXPECT_TRUE(segments("mode").at(1)->isChecked());
    for (const char* name : {"routePane", "stationTable", "addStationButton", "removeStationButton",
                             "moveStationUpButton", "moveStationDownButton", "stationHint",
                             "routeOptions", "travel", "routeMapCheckbox", "routeEndpointField"})
        EXPECT_TRUE(control(name)->isVisible()) << name;
    for (const char* name : {"mapOptions", "radius", "endpoint", "endpointField"})
        EXPECT_FALSE(control(name)->isVisible()) << name;
    EXPECT_EQ(text("subtitle"),
              u"Deine Stationen. Straßen, Gebäude und Gelände entlang der Strecke."_s);
    EXPECT_EQ(text("credit"), routeCredit);
    EXPECT_EQ(status(), says::routeReady);
    EXPECT_EQ(button("downloadButton")->title(), u"Route berechnen"_s);
    for (const char* name : {"addStationButton", "removeStationButton", "moveStationUpButton",
                             "moveStationDownButton", "downloadButton"})
        EXPECT_FALSE(control(name)->isEnabled()) << name;
}

TEST_F(StartTest, the_options_of_a_place_start_with_the_usual_ones) {
    start();
    EXPECT_EQ(items(*popUp("radius")),
              QStringList({u"400 m"_s, u"800 m"_s, u"1,2 km"_s, u"2 km"_s}));
    EXPECT_EQ(popUp("radius")->currentText(), u"800 m"_s);
    EXPECT_EQ(items(*popUp("endpoint")),
              QStringList({u"OpenStreetMap direkt"_s, u"Overpass · Standard"_s,
                           u"Overpass · Alternative"_s, u"Eigene HTTPS-Adresse"_s}));
    EXPECT_EQ(popUp("endpoint")->currentText(), u"OpenStreetMap direkt"_s);
    EXPECT_EQ(field("endpointField")->text(), u"https://api.openstreetmap.org/api/0.6/map"_s);
    EXPECT_TRUE(field("endpointField")->isReadOnly());
    QTest::keyClicks(field("endpointField"), u"x"_s);
    EXPECT_EQ(field("endpointField")->text(), u"https://api.openstreetmap.org/api/0.6/map"_s);
}

TEST_F(StartTest, the_options_of_a_route_start_with_the_usual_ones) {
    start(Mode::Route);
    EXPECT_EQ(titles(segments("travel")), QStringList({u"Auto"_s, u"Zug"_s, u"Flug"_s}));
    EXPECT_EQ(control<look::Segments>("travel")->selectedSegment(), 0);
    EXPECT_EQ(
        toolTipAt(control("travel"), {5, 5}),
        u"Auto: Straßenroute über den Routingdienst. Zug: entlang echter Gleise aus OpenStreetMap. Flug: Bogen in der Höhe zwischen den Stationen. Gebäude und Gelände kommen immer mit."_s);
    const auto* box = control<QCheckBox>("routeMapCheckbox");
    EXPECT_EQ(box->text(), u"3D-Paket: Gebäude, Straßen, Gelände"_s);
    EXPECT_EQ(
        box->toolTip(),
        u"Norvaxel 3D lädt zu jeder Route Gebäude und Straßen entlang der ganzen Strecke sowie das Gelände. Benötigt Internet; danach rendert das Paket offline."_s);
    const auto* routing = field("routeEndpointField");
    EXPECT_EQ(routing->text(), u"https://routing.openstreetmap.de/routed-car/route/v1/driving"_s);
    EXPECT_EQ(
        routing->toolTip(),
        u"Optional: eigener kompatibler HTTPS-Routingdienst ohne Zugangsdaten. Die Standardadresse verwendet öffentliche OSM-Daten."_s);
    EXPECT_FALSE(routing->isReadOnly());
    EXPECT_EQ(text("stationHint"), u"Stationen · 0 / 32"_s);
    EXPECT_EQ(button("addStationButton")->title(), u"Als Station hinzufügen"_s);
    EXPECT_EQ(button("removeStationButton")->title(), u"Entfernen"_s);
    EXPECT_EQ(button("moveStationUpButton")->title(), u"Hoch"_s);
    EXPECT_EQ(button("moveStationDownButton")->title(), u"Runter"_s);
    QStringList captions;
    for (const look::Label* label : control("routeOptions")->findChildren<look::Label*>())
        captions += label->text();
    EXPECT_EQ(captions,
              QStringList({u"Reiseart"_s, u"Routingdienst · eigene HTTPS-Adresse optional"_s}));
}

TEST_F(StartTest, the_package_of_a_route_is_ticked_and_cannot_be_left_out) {
    start(Mode::Route);
    auto* box = control<QCheckBox>("routeMapCheckbox");
    EXPECT_TRUE(box->isChecked());
    EXPECT_FALSE(box->isEnabled());
    click(box);
    key(box, Qt::Key_Space);
    EXPECT_TRUE(box->isChecked());
    chooseMode(0);
    EXPECT_FALSE(box->isEnabled());
    chooseMode(1);
    EXPECT_FALSE(box->isEnabled());
    EXPECT_TRUE(box->isChecked());
}

TEST_F(StartTest, the_travel_mode_can_be_chosen_and_changes_nothing_else) {
    start(Mode::Route);
    for (const int chosen : {1, 2, 0}) {
        click(segments("travel").at(chosen));
        EXPECT_EQ(control<look::Segments>("travel")->selectedSegment(), chosen);
        EXPECT_EQ(text("credit"), routeCredit);
        EXPECT_EQ(status(), says::routeReady);
    }
}

TEST_F(StartTest, the_window_opens_with_its_natural_content_size) {
    for (const Mode mode : {Mode::Place, Mode::Route}) {
        start(mode);
        EXPECT_EQ(window()->centralWidget()->size(), QSize(820, 760));
        end();
    }
}

TEST_F(StartTest, the_window_shows_its_icon_when_it_is_there) {
    start();
    EXPECT_TRUE(window()->windowIcon().isNull()) << "the first picture does not wait for it";
    ASSERT_EVENTUALLY(!window()->windowIcon().isNull());
    const QIcon icon = window()->windowIcon();
    for (const int side : {16, 32, 48}) {
        const QImage picture = icon.pixmap(side).toImage();
        ASSERT_EQ(picture.size(), QSize(side, side));
        EXPECT_EQ(qAlpha(picture.pixel(0, 0)), 0) << "round corners";
        int blue = 0;
        int white = 0;
        for (int x = 0; x < side; ++x)
            for (int y = 0; y < side; ++y) {
                blue += picture.pixelColor(x, y).blue() > 150;
                white += picture.pixelColor(x, y).red() > 200;
            }
        EXPECT_GT(blue, side * side / 5) << "the buildings";
        EXPECT_GT(white, side * side / 40) << "their panes";
    }
}

TEST_F(StartTest, the_window_cannot_be_made_smaller_than_its_least_size) {
    for (const Mode mode : {Mode::Place, Mode::Route}) {
        start(mode);
        window()->resize(100, 100);
        settle();
        EXPECT_EQ(window()->centralWidget()->size(), QSize(780, 730));
        EXPECT_GE(window()->minimumSizeHint().width(), 780);
        EXPECT_GE(window()->minimumSizeHint().height(), 730 + window()->menuBar()->height());
        end();
    }
}

} // namespace
