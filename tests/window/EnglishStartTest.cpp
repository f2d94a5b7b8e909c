// The window in English: every text comes from its column, but for one that stays German.

#include "WindowTest.h"

#include <QMenu>
#include <QMenuBar>

using namespace Qt::StringLiterals;
using namespace app;

const ProgramLanguage programLanguage{"en", "fr"};

namespace {

class EnglishStartTest : public WindowTest {
protected:
    QStringList captions() const {
        QStringList all;
        for (const look::Label* label : window()->findChildren<look::Label*>())
            all += label->text();
        all.removeAll(QString());
        return all;
    }
};

TEST_F(EnglishStartTest, every_text_is_translated_but_for_the_kind_of_travel) {
    start();
    EXPECT_EQ(window()->windowTitle(), u"Norvaxel 3D · Places and Routes"_s);
    const QStringList labels = captions();
    for (
        const QString& words :
        {u"Norvaxel 3D"_s, u"Place data with buildings and terrain for Norvaxel 3D"_s,
         u"Search results · choose a place"_s, u"Results appear after your search"_s,
         u"Stops · 0 / 32"_s, u"Radius"_s, u"Data service"_s, u"Reiseart"_s,
         u"Routing service · optional custom HTTPS address"_s,
         u"Enter a place and start searching."_s,
         u"Photon · OpenStreetMap data (ODbL) · Terrain Tiles (AWS)\nDownload once, then use offline in Norvaxel 3D. The radius limits the area."_s})
        EXPECT_TRUE(labels.contains(words)) << words.toStdString();
    EXPECT_EQ(labels.size(), 11) << labels.join(u'|').toStdString();
    EXPECT_EQ(field("query")->placeholderText(), u"City, place or address worldwide"_s);

    const struct {
        const char* control;
        QString title;
    } buttons[] = {{"searchButton", u"Search"_s},
                   {"addStationButton", u"Add as stop"_s},
                   {"removeStationButton", u"Remove"_s},
                   {"moveStationUpButton", u"Move up"_s},
                   {"moveStationDownButton", u"Move down"_s},
                   {"cancelButton", u"Cancel"_s},
                   {"languageButton", u"Language"_s},
                   {"finderButton", u"Show folder"_s},
                   {"downloadButton", u"Download place data"_s}};
    for (const auto& [name, title] : buttons)
        EXPECT_EQ(button(name)->title(), title);
    EXPECT_EQ(window()->findChildren<look::Button*>().size(), std::ssize(buttons));

    QStringList choices;
    for (const QRadioButton* segment : window()->findChildren<QRadioButton*>())
        choices += segment->text();
    EXPECT_EQ(choices,
              QStringList({u"Place map"_s, u"Route"_s, u"Car"_s, u"Train"_s, u"Flight"_s}));
    for (const char* name : {"radius", "endpoint"})
        for (int i = 0; i < popUp(name)->count(); ++i)
            choices += popUp(name)->itemText(i);
    EXPECT_EQ(choices.sliced(5),
              QStringList({u"400 m"_s, u"800 m"_s, u"1.2 km"_s, u"2 km"_s,
                           u"OpenStreetMap directly"_s, u"Overpass · Default"_s,
                           u"Overpass · Alternative"_s, u"Custom HTTPS address"_s}));
}

TEST_F(EnglishStartTest, tooltips_and_the_check_box_are_translated) {
    start(Mode::Route);
    EXPECT_EQ(button("languageButton")->toolTip(), u"Choose a language and save it locally"_s);
    EXPECT_EQ(
        control("travel")->toolTip(),
        u"Car: road route from the routing service. Train: along real OpenStreetMap tracks. Flight: an elevated arc between stops. Buildings and terrain are always included."_s);
    EXPECT_EQ(
        control("routeEndpointField")->toolTip(),
        u"Optional: your own compatible HTTPS routing service without credentials. The default address uses public OSM data."_s);
    EXPECT_EQ(control<QCheckBox>("routeMapCheckbox")->text(),
              u"3D package: buildings, roads and terrain"_s);
    EXPECT_EQ(
        control("routeMapCheckbox")->toolTip(),
        u"Norvaxel 3D downloads buildings and roads along the entire route, together with terrain. Requires internet; the package then renders offline."_s);
}

TEST_F(EnglishStartTest, route_mode_is_translated) {
    start(Mode::Route);
    EXPECT_EQ(text("subtitle"), u"Your stops. Roads, buildings and terrain along the route."_s);
    EXPECT_EQ(
        status(),
        u"Search for a city or address, choose a result and add it as a stop. At least two stops are required."_s);
    EXPECT_EQ(
        text("credit"),
        u"Photon · OSRM · OpenFreeMap / OpenMapTiles · Terrain Tiles (AWS) · OpenStreetMap data (ODbL)\nInternet required · long routes take a few minutes to download · Norvaxel 3D packages render offline."_s);
    EXPECT_EQ(button("downloadButton")->title(), u"Calculate route"_s);
}

TEST_F(EnglishStartTest, spoken_names_are_translated_but_for_the_kind_of_travel) {
    start();
    const struct {
        const char* control;
        QString name;
    } names[] = {{"query", u"City, place or address worldwide"_s},
                 {"endpointField", u"Data service"_s},
                 {"routeEndpointField", u"Routing service · optional custom HTTPS address"_s},
                 {"table", u"Search results · choose a place"_s},
                 {"stationTable", u"Stops · 0 / 32"_s},
                 {"travel", u"Reiseart"_s}};
    for (const auto& [name, words] : names)
        EXPECT_EQ(QAccessible::queryAccessibleInterface(control(name))->text(QAccessible::Name),
                  words);
}

TEST_F(EnglishStartTest, menus_are_translated_but_for_the_programs_name) {
    start();
    QStringList titles;
    for (const QAction* menu : window()->menuBar()->actions()) {
        titles += menu->text();
        for (const QAction* item : menu->menu()->actions())
            titles += item->text();
    }
    EXPECT_EQ(titles, QStringList({u"Norvaxel"_s, u"Quit Norvaxel"_s, u"Edit"_s, u"Cut"_s,
                                   u"Copy"_s, u"Paste"_s, u"Select All"_s, u"Window"_s, u"Close"_s,
                                   u"Minimize"_s, u"Zoom"_s}));
}

// English words are longer than German ones here and there. The one caption that gives way where
// the row is full says it again in its tooltip.
TEST_F(EnglishStartTest, every_title_fits_into_the_smallest_window) {
    const QString givesWay = u"Routing service · optional custom HTTPS address"_s;
    for (const Mode mode : {Mode::Place, Mode::Route}) {
        start(mode);
        window()->resize(780, 730);
        settle();
        for (const look::Button* each : window()->findChildren<look::Button*>())
            EXPECT_FALSE(each->isVisible() && each->isElided()) << each->title().toStdString();
        for (const look::Label* each : window()->findChildren<look::Label*>())
            EXPECT_FALSE(each->isVisible() && each->isElided() && each->text() != givesWay)
                << each->text().toStdString();
        for (const look::PopUp* each : window()->findChildren<look::PopUp*>())
            EXPECT_FALSE(each->isElided()) << each->currentText().toStdString();
        end();
    }
}

} // namespace
