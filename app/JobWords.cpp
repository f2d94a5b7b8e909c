#include "JobWords.h"

#include "NXLocal.h"

using namespace Qt::StringLiterals;

namespace {

QString placeRefusal(Refusal refusal) {
    switch (refusal) {
    case Refusal::ServiceAddress:
        return NXLocal(u"Der Datendienst braucht eine gültige HTTPS-Adresse ohne Zugangsdaten."_s);
    case Refusal::ToolMissing:
        return NXLocal(
            u"Der Ortsimport fehlt im Norvaxel-Paket. Bitte das vollständige Plugin installieren."_s);
    case Refusal::PackageFolder:
    case Refusal::OutputFolder:
        return NXLocal(u"Der Ordner für Ortsdaten konnte nicht angelegt werden."_s);
    case Refusal::TemporaryFolder:
        return NXLocal(u"Der temporäre Importordner konnte nicht angelegt werden."_s);
    case Refusal::HandOver:
        return NXLocal(u"Das Suchergebnis konnte nicht für den Import gespeichert werden."_s);
    case Refusal::Log:
        return NXLocal(u"Das Importprotokoll konnte nicht angelegt werden."_s);
    case Refusal::StationName:
    case Refusal::ChoiceMissing:
        break;
    }
    return NXLocal(u"Bitte den Ort erneut suchen und einen Treffer auswählen."_s);
}

QString routeRefusal(Refusal refusal) {
    switch (refusal) {
    case Refusal::ServiceAddress:
        return NXLocal(
            u"Der Routingdienst braucht eine gültige HTTPS-Adresse ohne Zugangsdaten, Suchparameter oder Fragment."_s);
    case Refusal::ToolMissing:
        return NXLocal(
            u"Der Routenimport fehlt im Norvaxel-Paket. Bitte das vollständige Plugin installieren."_s);
    case Refusal::PackageFolder:
        return NXLocal(u"Der Ordner für gespeicherte Routen konnte nicht angelegt werden."_s);
    case Refusal::TemporaryFolder:
        return NXLocal(u"Der temporäre Routenordner konnte nicht angelegt werden."_s);
    case Refusal::StationName:
        return NXLocal(
            u"Ein Stationsname ist zu lang. Wähle einen eindeutig benannten Ort oder eine Adresse aus."_s);
    case Refusal::HandOver:
        return NXLocal(u"Die ausgewählten Stationen konnten nicht vorbereitet werden."_s);
    case Refusal::OutputFolder:
        return NXLocal(u"Der neue Routenordner konnte nicht vorbereitet werden."_s);
    case Refusal::Log:
        return NXLocal(u"Das Routenprotokoll konnte nicht angelegt werden."_s);
    case Refusal::ChoiceMissing:
        break;
    }
    return NXLocal(u"Wähle zwei bis 32 Stationen aus den Suchergebnissen aus."_s);
}

QString placeOutcome(const JobReport& report) {
    switch (report.outcome) {
    case JobOutcome::Cancelled:
        return NXLocal(u"Import abgebrochen. Du kannst einen anderen Ort oder Umkreis wählen."_s);
    case JobOutcome::Succeeded:
        return NXLocal(u"Norvaxel-3D-Paket fertig – im Plugin »Letzten Import laden« wählen."_s);
    case JobOutcome::SucceededWithoutPointer:
        return NXLocal(
            u"Ortsdaten sind fertig. Die Verbindung zu Resolve konnte nicht gespeichert werden. Öffne den Ordner und wähle origin.nxd im Plugin."_s);
    case JobOutcome::Failed:
        break;
    }
    if (report.failureDetail.isEmpty())
        return NXLocal(
            u"Die Ortsdaten konnten nicht geladen werden. Prüfe Verbindung und Datendienst oder wähle einen kleineren Umkreis."_s);
    return filled(
        NXLocal(
            u"Download fehlgeschlagen: %@\nVersuche einen kleineren Umkreis oder einen anderen Datendienst."_s),
        {report.failureDetail});
}

QString routeOutcome(const JobReport& report) {
    switch (report.outcome) {
    case JobOutcome::Cancelled:
        return NXLocal(u"Routenberechnung abgebrochen. Deine Stationen bleiben erhalten."_s);
    case JobOutcome::Succeeded:
        return NXLocal(
            u"Norvaxel-3D-Paket fertig: Route, Gebäude und Gelände – im Plugin »Letzten Import laden« wählen. Das Paket rendert offline."_s);
    case JobOutcome::SucceededWithoutPointer:
        return NXLocal(
            u"Das Paket ist gespeichert. Öffne den Ordner und wähle route.nxd im Plugin; die Verbindung zu Resolve konnte nicht gespeichert werden."_s);
    case JobOutcome::Failed:
        break;
    }
    if (report.failureDetail.isEmpty())
        return NXLocal(
            u"Das Norvaxel-3D-Paket konnte nicht vollständig geladen werden. Prüfe Internet und Stationen; für sehr lange Strecken kürzere Abschnitte berechnen."_s);
    return filled(NXLocal(u"Berechnung fehlgeschlagen: %@"_s), {report.failureDetail});
}

} // namespace

QString refusalText(JobKind kind, Refusal refusal) {
    return kind == JobKind::Route ? routeRefusal(refusal) : placeRefusal(refusal);
}

QString startFailureText(JobKind kind, const std::error_code& failure) {
    if (kind == JobKind::Route)
        return NXLocal(
            u"Die mitgelieferte Routenberechnung konnte nicht starten. Bitte das vollständige Plugin installieren."_s);
    const QString reason = QString::fromLocal8Bit(failure.message());
    return filled(NXLocal(u"Der mitgelieferte Ortsimport konnte nicht starten: %@"_s),
                  {reason.isEmpty() ? NXLocal(u"Unbekannter Startfehler"_s) : reason});
}

QString progressText(JobKind kind, Travel travel) {
    if (kind == JobKind::Place)
        return NXLocal(
            u"Ortsdaten, Gebäude und Gelände werden für Norvaxel 3D geladen. Das kann etwas dauern …"_s);
    switch (travel) {
    case Travel::Train:
        return NXLocal(
            u"Gleisverlauf, Gebäude und Gelände werden für Norvaxel 3D geladen. Lange Strecken brauchen einige Minuten …"_s);
    case Travel::Flight:
        return NXLocal(
            u"Flugbogen, Gebäude und Gelände werden für Norvaxel 3D geladen. Lange Strecken brauchen einige Minuten …"_s);
    case Travel::Car:
        break;
    }
    return NXLocal(
        u"Route, Gebäude und Gelände werden für Norvaxel 3D geladen. Lange Strecken brauchen einige Minuten …"_s);
}

QString stoppingText(JobKind kind) {
    return kind == JobKind::Route ? NXLocal(u"Routenberechnung wird beendet …"_s)
                                  : NXLocal(u"Import wird beendet …"_s);
}

QString outcomeText(JobKind kind, const JobReport& report) {
    return kind == JobKind::Route ? routeOutcome(report) : placeOutcome(report);
}

QString failureTitle(JobKind kind) {
    return kind == JobKind::Route ? NXLocal(u"Route konnte nicht berechnet werden"_s)
                                  : NXLocal(u"Ortsdaten konnten nicht geladen werden"_s);
}
