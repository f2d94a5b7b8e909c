#include "app/Sentences.h"

#include "localization/NXLocal.h"

#include <gtest/gtest.h>

using namespace app;
using jobs::JobOutcome;
using jobs::JobReport;
using jobs::Refusal;
using jobs::Travel;
using localization::filled;
using localization::NXLocal;
using search::SearchFailure;

namespace {

// Another language than that of the code, so that a sentence that is not looked up shows. It is
// settled by the first look-up.
class Sentences : public testing::Test {
protected:
    static void SetUpTestSuite() {
        ASSERT_EQ(::setenv("HOME", "/nowhere", 1), 0);
        ASSERT_EQ(::setenv("LANGUAGE", "fr", 1), 0);
    }

    static void expect(const QString& said, const char16_t* german) {
        EXPECT_EQ(said.toStdString(), NXLocal(german).toStdString());
        EXPECT_NE(said, QString::fromUtf16(german)) << "not looked up";
    }
};

constexpr Mode place = Mode::Place;
constexpr Mode route = Mode::Route;

// A sentence that a place and a route say in their own ways.
struct Pair {
    const char16_t* place;
    const char16_t* route;
};

} // namespace

// One sentence a line.
// clang-format off

TEST_F(Sentences, of_the_window_in_each_mode) {
    expect(subtitleText(place), u"Ortsdaten mit Gebäuden und Gelände für Norvaxel 3D");
    expect(subtitleText(route), u"Deine Stationen. Straßen, Gebäude und Gelände entlang der Strecke.");
    expect(creditText(place), u"Photon · OpenStreetMap-Daten (ODbL) · Terrain Tiles (AWS)\nEinmal laden, danach offline in Norvaxel 3D nutzen. Der Umkreis begrenzt den Ausschnitt.");
    expect(creditText(route), u"Photon · OSRM · OpenFreeMap / OpenMapTiles · Terrain Tiles (AWS) · OpenStreetMap-Daten (ODbL)\nInternet erforderlich · lange Strecken laden einige Minuten · das Norvaxel-3D-Paket rendert offline.");
    expect(welcomeText(place), u"Gib einen Ort ein und starte die Suche.");
    expect(welcomeText(route), u"Stadt oder Adresse suchen, Treffer auswählen und als Station hinzufügen. Mindestens zwei Stationen sind nötig.");
    expect(languageNotSaved(), u"Die Sprache konnte nicht lokal gespeichert werden.");
}

TEST_F(Sentences, of_a_search) {
    expect(badQueryStatus(), u"Bitte einen Ortsnamen mit höchstens 300 Zeichen eingeben.");
    expect(searchingStatus(), u"Orte werden gesucht …");
    expect(searchingInstead(), u"Suche läuft …");
    expect(noPlacesStatus(), u"Kein Ort gefunden. Ergänze den Namen um Land oder Region.");
    expect(noPlacesInstead(), u"Keine passenden Orte gefunden");
    expect(placesStatus(), u"Wähle einen Treffer aus. Gleichnamige Orte stehen mit Region und Land in der Liste.");
    EXPECT_EQ(placesHint(8), filled(NXLocal(u"%lu Treffer · bitte den richtigen Ort auswählen"), {8}));
    expect(cancelledSearchStatus(), u"Suche abgebrochen.");
    expect(cancelledSearchInstead(), u"Suche abgebrochen");
    expect(editedStatus(place), u"Gib einen Ort ein und starte die Suche.");
    expect(editedStatus(route), u"Neuen Ort suchen. Deine bisherigen Stationen bleiben erhalten.");
    expect(editedHint(), u"Suchergebnisse · wähle einen Ort aus");
    expect(selectedStatus(place), u"Ort ausgewählt. Umkreis festlegen und Ortsdaten laden.");
    expect(selectedStatus(route), u"Treffer ausgewählt. Füge ihn deiner Route als Station hinzu.");
}

TEST_F(Sentences, of_a_search_that_failed) {
    expect(failureText(SearchFailure::AddressRefused), u"Die Ortssuche braucht eine gültige HTTPS-Adresse.");
    expect(failureText(SearchFailure::NotStarted), u"Der Systemtransport für die Ortssuche konnte nicht gestartet werden.");
    expect(failureText(SearchFailure::Unreadable), u"Die Antwort der Ortssuche konnte nicht gelesen werden.");
    expect(failureText(SearchFailure::TooLarge), u"Die Antwort der Ortssuche ist zu groß. Bitte präziser suchen.");
    expect(failureText(SearchFailure::CurlTimedOut), u"Zeitlimit der Ortssuche erreicht. Prüfe die Verbindung und versuche es erneut.");
    expect(failureText(SearchFailure::TimedOut), u"Zeitlimit der Ortssuche erreicht. Bitte erneut versuchen.");
    expect(failureText(SearchFailure::NotResponding), u"Die Ortssuche antwortet gerade nicht. Bitte später erneut versuchen.");
    expect(failureText(SearchFailure::Unreachable), u"Die Ortssuche ist nicht erreichbar. Prüfe die Verbindung und versuche es erneut.");
    expect(failureText(SearchFailure::NotUnderstood), u"Die Ortssuche hat eine unlesbare Antwort geliefert.");
}

TEST_F(Sentences, of_the_stations) {
    expect(addedStationStatus(1), u"Start gesetzt. Suche jetzt dein Ziel und füge es als Station hinzu.");
    expect(addedStationStatus(2), u"Station hinzugefügt. Reihenfolge prüfen und Route berechnen.");
    expect(removedStationStatus(), u"Station entfernt. Mindestens zwei Stationen bilden eine Route.");
    expect(movedStationStatus(), u"Reihenfolge geändert. Die Route wird in dieser Reihenfolge berechnet.");
}

TEST_F(Sentences, of_a_job_that_was_refused) {
    const std::pair<Refusal, Pair> rows[] = {
        {Refusal::ChoiceMissing, {u"Bitte den Ort erneut suchen und einen Treffer auswählen.", u"Wähle zwei bis 32 Stationen aus den Suchergebnissen aus."}},
        {Refusal::ServiceAddress, {u"Der Datendienst braucht eine gültige HTTPS-Adresse ohne Zugangsdaten.", u"Der Routingdienst braucht eine gültige HTTPS-Adresse ohne Zugangsdaten, Suchparameter oder Fragment."}},
        {Refusal::ToolMissing, {u"Der Ortsimport fehlt im Norvaxel-Paket. Bitte das vollständige Plugin installieren.", u"Der Routenimport fehlt im Norvaxel-Paket. Bitte das vollständige Plugin installieren."}},
        {Refusal::PackageFolder, {u"Der Ordner für Ortsdaten konnte nicht angelegt werden.", u"Der Ordner für gespeicherte Routen konnte nicht angelegt werden."}},
        {Refusal::TemporaryFolder, {u"Der temporäre Importordner konnte nicht angelegt werden.", u"Der temporäre Routenordner konnte nicht angelegt werden."}},
        {Refusal::StationName, {u"Ein Stationsname ist zu lang. Wähle einen eindeutig benannten Ort oder eine Adresse aus.", u"Ein Stationsname ist zu lang. Wähle einen eindeutig benannten Ort oder eine Adresse aus."}},
        {Refusal::HandOver, {u"Das Suchergebnis konnte nicht für den Import gespeichert werden.", u"Die ausgewählten Stationen konnten nicht vorbereitet werden."}},
        {Refusal::OutputFolder, {u"Der Ordner für Ortsdaten konnte nicht angelegt werden.", u"Der neue Routenordner konnte nicht vorbereitet werden."}},
        {Refusal::Log, {u"Das Importprotokoll konnte nicht angelegt werden.", u"Das Routenprotokoll konnte nicht angelegt werden."}},
    };
    for (const auto& [refusal, german] : rows) {
        expect(refusalText(place, refusal), german.place);
        expect(refusalText(route, refusal), german.route);
    }
}

TEST_F(Sentences, of_a_tool_that_did_not_start) {
    const auto missing = std::make_error_code(std::errc::no_such_file_or_directory);
    const QString reason = QString::fromLocal8Bit(missing.message());
    EXPECT_EQ(startFailureText(place, missing), filled(NXLocal(u"Der mitgelieferte Ortsimport konnte nicht starten: %@"), {reason}));
    expect(startFailureText(route, missing), u"Die mitgelieferte Routenberechnung konnte nicht starten. Bitte das vollständige Plugin installieren.");

    class Silent : public std::error_category {
    public:
        const char* name() const noexcept override { return "silent"; }
        std::string message(int /*value*/) const override { return {}; }
    } const silent;
    EXPECT_EQ(startFailureText(place, {1, silent}), filled(NXLocal(u"Der mitgelieferte Ortsimport konnte nicht starten: %@"), {NXLocal(u"Unbekannter Startfehler")}));
}

TEST_F(Sentences, of_a_job_that_runs) {
    for (const Travel travel : {Travel::Car, Travel::Train, Travel::Flight})
        expect(progressText(place, travel), u"Ortsdaten, Gebäude und Gelände werden für Norvaxel 3D geladen. Das kann etwas dauern …");
    expect(progressText(route, Travel::Car), u"Route, Gebäude und Gelände werden für Norvaxel 3D geladen. Lange Strecken brauchen einige Minuten …");
    expect(progressText(route, Travel::Train), u"Gleisverlauf, Gebäude und Gelände werden für Norvaxel 3D geladen. Lange Strecken brauchen einige Minuten …");
    expect(progressText(route, Travel::Flight), u"Flugbogen, Gebäude und Gelände werden für Norvaxel 3D geladen. Lange Strecken brauchen einige Minuten …");
    expect(stoppingText(place), u"Import wird beendet …");
    expect(stoppingText(route), u"Routenberechnung wird beendet …");
}

TEST_F(Sentences, of_a_job_that_has_ended) {
    const std::pair<JobOutcome, Pair> rows[] = {
        {JobOutcome::Cancelled, {u"Import abgebrochen. Du kannst einen anderen Ort oder Umkreis wählen.", u"Routenberechnung abgebrochen. Deine Stationen bleiben erhalten."}},
        {JobOutcome::Succeeded, {u"Norvaxel-3D-Paket fertig – im Plugin »Letzten Import laden« wählen.", u"Norvaxel-3D-Paket fertig: Route, Gebäude und Gelände – im Plugin »Letzten Import laden« wählen. Das Paket rendert offline."}},
        {JobOutcome::SucceededWithoutPointer, {u"Ortsdaten sind fertig. Die Verbindung zu Resolve konnte nicht gespeichert werden. Öffne den Ordner und wähle origin.nxd im Plugin.", u"Das Paket ist gespeichert. Öffne den Ordner und wähle route.nxd im Plugin; die Verbindung zu Resolve konnte nicht gespeichert werden."}},
        {JobOutcome::Failed, {u"Die Ortsdaten konnten nicht geladen werden. Prüfe Verbindung und Datendienst oder wähle einen kleineren Umkreis.", u"Das Norvaxel-3D-Paket konnte nicht vollständig geladen werden. Prüfe Internet und Stationen; für sehr lange Strecken kürzere Abschnitte berechnen."}},
    };
    for (const auto& [outcome, german] : rows) {
        expect(outcomeText(place, JobReport{outcome, {}, {}, {}}), german.place);
        expect(outcomeText(route, JobReport{outcome, {}, {}, {}}), german.route);
    }
    // What a log says may look like a placeholder.
    const JobReport failed{JobOutcome::Failed, QString::fromUtf16(u"50 %@"), {}, {}};
    EXPECT_EQ(outcomeText(place, failed), filled(NXLocal(u"Download fehlgeschlagen: %@\nVersuche einen kleineren Umkreis oder einen anderen Datendienst."), {failed.failureDetail}));
    EXPECT_EQ(outcomeText(route, failed), filled(NXLocal(u"Berechnung fehlgeschlagen: %@"), {failed.failureDetail}));
    EXPECT_TRUE(outcomeText(place, failed).contains(failed.failureDetail));
    // What reads from the right stands by itself in a sentence that reads from the left.
    const JobReport arabic{JobOutcome::Failed, QString::fromUtf16(u"-7.9 مراكش"), {}, {}};
    EXPECT_TRUE(outcomeText(route, arabic).endsWith(QString::fromUtf16(u"\u2068-7.9 مراكش\u2069")));
    expect(failureTitle(place), u"Ortsdaten konnten nicht geladen werden");
    expect(failureTitle(route), u"Route konnte nicht berechnet werden");
}
