#include "app/Sentences.h"

#include "localization/NXLocal.h"
#include "look/text/Direction.h"

namespace app {
namespace {

using jobs::JobKind;
using jobs::JobOutcome;
using jobs::JobReport;
using jobs::Refusal;
using jobs::Travel;
using localization::filled;
using localization::NXLocal;
using search::SearchFailure;

// The place's or the route's text.
QString words(JobKind kind, QStringView place, QStringView route) {
    return NXLocal(kind == JobKind::Route ? route : place);
}

} // namespace

// A sentence stays on its line.
// clang-format off

QString subtitleText(Mode mode) {
    return words(mode, u"Ortsdaten mit Gebäuden und Gelände für Norvaxel 3D",
                       u"Deine Stationen. Straßen, Gebäude und Gelände entlang der Strecke.");
}

QString creditText(Mode mode) {
    return words(mode, u"Photon · OpenStreetMap-Daten (ODbL) · Terrain Tiles (AWS)\nEinmal laden, danach offline in Norvaxel 3D nutzen. Der Umkreis begrenzt den Ausschnitt.",
                       u"Photon · OSRM · OpenFreeMap / OpenMapTiles · Terrain Tiles (AWS) · OpenStreetMap-Daten (ODbL)\nInternet erforderlich · lange Strecken laden einige Minuten · das Norvaxel-3D-Paket rendert offline.");
}

QString welcomeText(Mode mode) {
    return words(mode, u"Gib einen Ort ein und starte die Suche.",
                       u"Stadt oder Adresse suchen, Treffer auswählen und als Station hinzufügen. Mindestens zwei Stationen sind nötig.");
}

QString badQueryStatus() {
    return NXLocal(u"Bitte einen Ortsnamen mit höchstens 300 Zeichen eingeben.");
}

QString searchingStatus() {
    return NXLocal(u"Orte werden gesucht …");
}

QString searchingInstead() {
    return NXLocal(u"Suche läuft …");
}

QString failureText(SearchFailure failure) {
    switch (failure) {
    case SearchFailure::AddressRefused:
        return NXLocal(u"Die Ortssuche braucht eine gültige HTTPS-Adresse.");
    case SearchFailure::NotStarted:
        return NXLocal(u"Der Systemtransport für die Ortssuche konnte nicht gestartet werden.");
    case SearchFailure::Unreadable:
        return NXLocal(u"Die Antwort der Ortssuche konnte nicht gelesen werden.");
    case SearchFailure::TooLarge:
        return NXLocal(u"Die Antwort der Ortssuche ist zu groß. Bitte präziser suchen.");
    case SearchFailure::CurlTimedOut:
        return NXLocal(u"Zeitlimit der Ortssuche erreicht. Prüfe die Verbindung und versuche es erneut.");
    case SearchFailure::TimedOut:
        return NXLocal(u"Zeitlimit der Ortssuche erreicht. Bitte erneut versuchen.");
    case SearchFailure::NotResponding:
        return NXLocal(u"Die Ortssuche antwortet gerade nicht. Bitte später erneut versuchen.");
    case SearchFailure::NotUnderstood:
        return NXLocal(u"Die Ortssuche hat eine unlesbare Antwort geliefert.");
    case SearchFailure::Unreachable:
        break;
    }
    return NXLocal(u"Die Ortssuche ist nicht erreichbar. Prüfe die Verbindung und versuche es erneut.");
}

QString noPlacesStatus() {
    return NXLocal(u"Kein Ort gefunden. Ergänze den Namen um Land oder Region.");
}

QString noPlacesInstead() {
    return NXLocal(u"Keine passenden Orte gefunden");
}

QString placesStatus() {
    return NXLocal(u"Wähle einen Treffer aus. Gleichnamige Orte stehen mit Region und Land in der Liste.");
}

QString placesHint(qsizetype places) {
    return filled(NXLocal(u"%lu Treffer · bitte den richtigen Ort auswählen"), {places});
}

QString cancelledSearchStatus() {
    return NXLocal(u"Suche abgebrochen.");
}

QString cancelledSearchInstead() {
    return NXLocal(u"Suche abgebrochen");
}

QString editedStatus(Mode mode) {
    return words(mode, u"Gib einen Ort ein und starte die Suche.",
                       u"Neuen Ort suchen. Deine bisherigen Stationen bleiben erhalten.");
}

QString editedHint() {
    return NXLocal(u"Suchergebnisse · wähle einen Ort aus");
}

QString selectedStatus(Mode mode) {
    return words(mode, u"Ort ausgewählt. Umkreis festlegen und Ortsdaten laden.",
                       u"Treffer ausgewählt. Füge ihn deiner Route als Station hinzu.");
}

QString addedStationStatus(qsizetype stations) {
    return stations == 1 ? NXLocal(u"Start gesetzt. Suche jetzt dein Ziel und füge es als Station hinzu.")
                         : NXLocal(u"Station hinzugefügt. Reihenfolge prüfen und Route berechnen.");
}

QString removedStationStatus() {
    return NXLocal(u"Station entfernt. Mindestens zwei Stationen bilden eine Route.");
}

QString movedStationStatus() {
    return NXLocal(u"Reihenfolge geändert. Die Route wird in dieser Reihenfolge berechnet.");
}

QString languageNotSaved() {
    return NXLocal(u"Die Sprache konnte nicht lokal gespeichert werden.");
}

QString refusalText(JobKind kind, Refusal refusal) {
    switch (refusal) {
    case Refusal::ChoiceMissing:
        break;
    case Refusal::ServiceAddress:
        return words(kind, u"Der Datendienst braucht eine gültige HTTPS-Adresse ohne Zugangsdaten.",
                           u"Der Routingdienst braucht eine gültige HTTPS-Adresse ohne Zugangsdaten, Suchparameter oder Fragment.");
    case Refusal::ToolMissing:
        return words(kind, u"Der Ortsimport fehlt im Norvaxel-Paket. Bitte das vollständige Plugin installieren.",
                           u"Der Routenimport fehlt im Norvaxel-Paket. Bitte das vollständige Plugin installieren.");
    case Refusal::PackageFolder:
        return words(kind, u"Der Ordner für Ortsdaten konnte nicht angelegt werden.",
                           u"Der Ordner für gespeicherte Routen konnte nicht angelegt werden.");
    case Refusal::TemporaryFolder:
        return words(kind, u"Der temporäre Importordner konnte nicht angelegt werden.",
                           u"Der temporäre Routenordner konnte nicht angelegt werden.");
    case Refusal::StationName: // only a route has stations
        return NXLocal(u"Ein Stationsname ist zu lang. Wähle einen eindeutig benannten Ort oder eine Adresse aus.");
    case Refusal::HandOver:
        return words(kind, u"Das Suchergebnis konnte nicht für den Import gespeichert werden.",
                           u"Die ausgewählten Stationen konnten nicht vorbereitet werden.");
    case Refusal::OutputFolder:
        return words(kind, u"Der Ordner für Ortsdaten konnte nicht angelegt werden.",
                           u"Der neue Routenordner konnte nicht vorbereitet werden.");
    case Refusal::Log:
        return words(kind, u"Das Importprotokoll konnte nicht angelegt werden.",
                           u"Das Routenprotokoll konnte nicht angelegt werden.");
    }
    return words(kind, u"Bitte den Ort erneut suchen und einen Treffer auswählen.",
                       u"Wähle zwei bis 32 Stationen aus den Suchergebnissen aus.");
}

QString startFailureText(JobKind kind, const std::error_code& failure) {
    const QString reason = QString::fromLocal8Bit(failure.message());
    // The sentence for a route has no place for the reason.
    const QString sentence = words(kind, u"Der mitgelieferte Ortsimport konnte nicht starten: %@",
                                         u"Die mitgelieferte Routenberechnung konnte nicht starten. Bitte das vollständige Plugin installieren.");
    return filled(sentence, {reason.isEmpty() ? NXLocal(u"Unbekannter Startfehler") : look::within(sentence, reason)});
}

QString progressText(JobKind kind, Travel travel) {
    if (kind == JobKind::Place)
        return NXLocal(u"Ortsdaten, Gebäude und Gelände werden für Norvaxel 3D geladen. Das kann etwas dauern …");
    switch (travel) {
    case Travel::Train:
        return NXLocal(u"Gleisverlauf, Gebäude und Gelände werden für Norvaxel 3D geladen. Lange Strecken brauchen einige Minuten …");
    case Travel::Flight:
        return NXLocal(u"Flugbogen, Gebäude und Gelände werden für Norvaxel 3D geladen. Lange Strecken brauchen einige Minuten …");
    case Travel::Car:
        break;
    }
    return NXLocal(u"Route, Gebäude und Gelände werden für Norvaxel 3D geladen. Lange Strecken brauchen einige Minuten …");
}

QString stoppingText(JobKind kind) {
    return words(kind, u"Import wird beendet …", u"Routenberechnung wird beendet …");
}

QString outcomeText(JobKind kind, const JobReport& report) {
    switch (report.outcome) {
    case JobOutcome::Cancelled:
        return words(kind, u"Import abgebrochen. Du kannst einen anderen Ort oder Umkreis wählen.",
                           u"Routenberechnung abgebrochen. Deine Stationen bleiben erhalten.");
    case JobOutcome::Succeeded:
        return words(kind, u"Norvaxel-3D-Paket fertig – im Plugin »Letzten Import laden« wählen.",
                           u"Norvaxel-3D-Paket fertig: Route, Gebäude und Gelände – im Plugin »Letzten Import laden« wählen. Das Paket rendert offline.");
    case JobOutcome::SucceededWithoutPointer:
        return words(kind, u"Ortsdaten sind fertig. Die Verbindung zu Resolve konnte nicht gespeichert werden. Öffne den Ordner und wähle origin.nxd im Plugin.",
                           u"Das Paket ist gespeichert. Öffne den Ordner und wähle route.nxd im Plugin; die Verbindung zu Resolve konnte nicht gespeichert werden.");
    case JobOutcome::Failed:
        break;
    }
    if (report.failureDetail.isEmpty())
        return words(kind, u"Die Ortsdaten konnten nicht geladen werden. Prüfe Verbindung und Datendienst oder wähle einen kleineren Umkreis.",
                           u"Das Norvaxel-3D-Paket konnte nicht vollständig geladen werden. Prüfe Internet und Stationen; für sehr lange Strecken kürzere Abschnitte berechnen.");
    const QString sentence = words(kind, u"Download fehlgeschlagen: %@\nVersuche einen kleineren Umkreis oder einen anderen Datendienst.",
                                         u"Berechnung fehlgeschlagen: %@");
    return filled(sentence, {look::within(sentence, report.failureDetail)});
}

QString failureTitle(JobKind kind) {
    return words(kind, u"Ortsdaten konnten nicht geladen werden",
                       u"Route konnte nicht berechnet werden");
}

// clang-format on

} // namespace app
