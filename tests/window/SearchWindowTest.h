#pragma once

#include "Geocoder.h"
#include "WindowTest.h"

// Base of the tests that search: finds places of any name and makes them stations, by real events.
// The geocoder knows nothing of an earlier test.
class SearchWindowTest : public WindowTest {
protected:
    void SetUp() override;

    // Offers these places as results; the search itself is the same each time.
    void offer(const QList<QJsonObject>& places);
    void offer(const QStringList& names);
    // Starts in route mode with a place chosen in the results.
    void startWithResults(const QStringList& names);
    // The same, and makes each of them a station, in this order.
    void startWithStations(const QStringList& names);
    // Chooses a result and presses the button.
    void addResult(int row);
    // Finds places of the sandbox and chooses the first; in route mode, makes three of them
    // stations.
    void findPlaces(Mode mode);
    void doubleClickRow(int row);
    // Waits until curl was ended; after 20 seconds it would give up by itself.
    static bool curlIsStopped() {
        return eventually([] { return geocoder.records("abandoned").size() == 1; },
                          std::chrono::seconds(19));
    }

    void clickStation(int row);
    // A key pressed in the station list.
    void stationKey(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    // The first lines of the station list's rows.
    QStringList stations() const;
    int selectedStation() const { return window()->selectedStation(); }
    bool stationIsInView(int row) const;

    // "1 · a", "2 · b", ...
    static QStringList numbered(const QStringList& names);
};

// A script for a route: the importer ends only with the file `gate`. What the importer was asked to
// do meanwhile is counted in the file of the same name with ".terms": one letter a SIGTERM.
QByteArray waitingTool(const std::filesystem::path& gate);

// What the window says of routes.
namespace says {
inline const QString resultChosen =
    u"Treffer ausgewählt. Füge ihn deiner Route als Station hinzu."_s;
inline const QString startSet =
    u"Start gesetzt. Suche jetzt dein Ziel und füge es als Station hinzu."_s;
inline const QString stationAdded =
    u"Station hinzugefügt. Reihenfolge prüfen und Route berechnen."_s;
inline const QString stationRemoved =
    u"Station entfernt. Mindestens zwei Stationen bilden eine Route."_s;
inline const QString stationMoved =
    u"Reihenfolge geändert. Die Route wird in dieser Reihenfolge berechnet."_s;
inline const QString routeLoading =
    u"Route, Gebäude und Gelände werden für Norvaxel 3D geladen. Lange Strecken "
    "brauchen einige Minuten …"_s;
inline const QString routeStopping = u"Routenberechnung wird beendet …"_s;
inline const QString routeCancelled =
    u"Routenberechnung abgebrochen. Deine Stationen bleiben erhalten."_s;
inline const QString routeFinished =
    u"Norvaxel-3D-Paket fertig: Route, Gebäude und Gelände – im Plugin »Letzten "
    "Import laden« wählen. Das Paket rendert offline."_s;
} // namespace says
