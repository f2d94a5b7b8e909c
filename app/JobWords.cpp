#include "app/JobWords.h"

#include "localization/NXLocal.h"

using namespace Qt::StringLiterals;

namespace app {

using localization::filled;
using localization::NXLocal;

// Each sentence stands here twice: for a place and for a route.
namespace {

class Words {
public:
    explicit Words(JobKind kind) : kind_(kind) {}

    QString operator()(QStringView place, QStringView route) const {
        return NXLocal(kind_ == JobKind::Route ? route : place);
    }

private:
    JobKind kind_;
};

} // namespace

// A sentence stays on its line.
// clang-format off

QString refusalText(JobKind kind, jobs::Refusal refusal) {
    const Words words(kind);
    switch (refusal) {
    case jobs::Refusal::ChoiceMissing:
        break;
    case jobs::Refusal::ServiceAddress:
        return words(u"Der Datendienst braucht eine gültige HTTPS-Adresse ohne Zugangsdaten.",
                     u"Der Routingdienst braucht eine gültige HTTPS-Adresse ohne Zugangsdaten, Suchparameter oder Fragment.");
    case jobs::Refusal::ToolMissing:
        return words(u"Der Ortsimport fehlt im Norvaxel-Paket. Bitte das vollständige Plugin installieren.",
                     u"Der Routenimport fehlt im Norvaxel-Paket. Bitte das vollständige Plugin installieren.");
    case jobs::Refusal::PackageFolder:
        return words(u"Der Ordner für Ortsdaten konnte nicht angelegt werden.",
                     u"Der Ordner für gespeicherte Routen konnte nicht angelegt werden.");
    case jobs::Refusal::TemporaryFolder:
        return words(u"Der temporäre Importordner konnte nicht angelegt werden.",
                     u"Der temporäre Routenordner konnte nicht angelegt werden.");
    case jobs::Refusal::StationName: // only a route has stations
        return NXLocal(u"Ein Stationsname ist zu lang. Wähle einen eindeutig benannten Ort oder eine Adresse aus.");
    case jobs::Refusal::HandOver:
        return words(u"Das Suchergebnis konnte nicht für den Import gespeichert werden.",
                     u"Die ausgewählten Stationen konnten nicht vorbereitet werden.");
    case jobs::Refusal::OutputFolder:
        return words(u"Der Ordner für Ortsdaten konnte nicht angelegt werden.",
                     u"Der neue Routenordner konnte nicht vorbereitet werden.");
    case jobs::Refusal::Log:
        return words(u"Das Importprotokoll konnte nicht angelegt werden.",
                     u"Das Routenprotokoll konnte nicht angelegt werden.");
    }
    return words(u"Bitte den Ort erneut suchen und einen Treffer auswählen.",
                 u"Wähle zwei bis 32 Stationen aus den Suchergebnissen aus.");
}

QString startFailureText(JobKind kind, const std::error_code& failure) {
    const QString reason = QString::fromLocal8Bit(failure.message());
    // The sentence for a route has no place for the reason.
    return filled(Words(kind)(u"Der mitgelieferte Ortsimport konnte nicht starten: %@",
                              u"Die mitgelieferte Routenberechnung konnte nicht starten. Bitte das vollständige Plugin installieren."),
                  {reason.isEmpty() ? NXLocal(u"Unbekannter Startfehler") : reason});
}

QString progressText(JobKind kind, jobs::Travel travel) {
    if (kind == JobKind::Place)
        return NXLocal(u"Ortsdaten, Gebäude und Gelände werden für Norvaxel 3D geladen. Das kann etwas dauern …");
    switch (travel) {
    case jobs::Travel::Train:
        return NXLocal(u"Gleisverlauf, Gebäude und Gelände werden für Norvaxel 3D geladen. Lange Strecken brauchen einige Minuten …");
    case jobs::Travel::Flight:
        return NXLocal(u"Flugbogen, Gebäude und Gelände werden für Norvaxel 3D geladen. Lange Strecken brauchen einige Minuten …");
    case jobs::Travel::Car:
        break;
    }
    return NXLocal(u"Route, Gebäude und Gelände werden für Norvaxel 3D geladen. Lange Strecken brauchen einige Minuten …");
}

QString stoppingText(JobKind kind) {
    return Words(kind)(u"Import wird beendet …", u"Routenberechnung wird beendet …");
}

QString outcomeText(JobKind kind, const jobs::JobReport& report) {
    const Words words(kind);
    switch (report.outcome) {
    case jobs::JobOutcome::Cancelled:
        return words(u"Import abgebrochen. Du kannst einen anderen Ort oder Umkreis wählen.",
                     u"Routenberechnung abgebrochen. Deine Stationen bleiben erhalten.");
    case jobs::JobOutcome::Succeeded:
        return words(u"Norvaxel-3D-Paket fertig – im Plugin »Letzten Import laden« wählen.",
                     u"Norvaxel-3D-Paket fertig: Route, Gebäude und Gelände – im Plugin »Letzten Import laden« wählen. Das Paket rendert offline.");
    case jobs::JobOutcome::SucceededWithoutPointer:
        return words(u"Ortsdaten sind fertig. Die Verbindung zu Resolve konnte nicht gespeichert werden. Öffne den Ordner und wähle origin.nxd im Plugin.",
                     u"Das Paket ist gespeichert. Öffne den Ordner und wähle route.nxd im Plugin; die Verbindung zu Resolve konnte nicht gespeichert werden.");
    case jobs::JobOutcome::Failed:
        break;
    }
    if (report.failureDetail.isEmpty())
        return words(u"Die Ortsdaten konnten nicht geladen werden. Prüfe Verbindung und Datendienst oder wähle einen kleineren Umkreis.",
                     u"Das Norvaxel-3D-Paket konnte nicht vollständig geladen werden. Prüfe Internet und Stationen; für sehr lange Strecken kürzere Abschnitte berechnen.");
    return filled(words(u"Download fehlgeschlagen: %@\nVersuche einen kleineren Umkreis oder einen anderen Datendienst.",
                        u"Berechnung fehlgeschlagen: %@"),
                  {report.failureDetail});
}

QString failureTitle(JobKind kind) {
    return Words(kind)(u"Ortsdaten konnten nicht geladen werden",
                       u"Route konnte nicht berechnet werden");
}

} // namespace app
