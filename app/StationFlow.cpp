#include "app/NXImportApp.h"
#include "localization/NXLocal.h"
#include "look/controls/PlaceList.h"

using namespace Qt::StringLiterals;

namespace app {

using localization::filled;
using localization::NXLocal;

void NXImportApp::addStation() {
    const int row = window_->selectedResult();
    if (busy() || row < 0 || row >= results_.size())
        return;
    const search::ResultRow& place = results_.at(row);
    const auto station = jobs::stationOf(place.name, place.detail, place.feature);
    if (!station)
        return;
    const auto added = stations_.add(*station);
    showStations(
        added,
        stations_.size() == 1
            ? NXLocal(u"Start gesetzt. Suche jetzt dein Ziel und füge es als Station hinzu."_s)
            : NXLocal(u"Station hinzugefügt. Reihenfolge prüfen und Route berechnen."_s));
}

void NXImportApp::removeStation() {
    if (importing_)
        return;
    showStations(stations_.remove(window_->selectedStation()),
                 NXLocal(u"Station entfernt. Mindestens zwei Stationen bilden eine Route."_s));
}

void NXImportApp::moveStation(int offset) {
    if (importing_)
        return;
    showStations(
        stations_.move(window_->selectedStation(), offset),
        NXLocal(u"Reihenfolge geändert. Die Route wird in dieser Reihenfolge berechnet."_s));
}

void NXImportApp::showStations(std::optional<int> selected, const QString& text) {
    if (!selected)
        return; // the edit was not possible
    QList<look::PlaceRow> rows;
    for (const jobs::Station& station : stations_.stations())
        rows.append(
            {filled(NXLocal(u"%ld · %@"_s), {rows.size() + 1, station.name}), station.detail});
    stationModel_.setRows(rows);
    const QModelIndex index = stationModel_.index(*selected, 0);
    window_->stationTable->setCurrentIndex(index);
    window_->stationTable->scrollTo(index);
    setStatus(text, StatusKind::Plain);
    updateControls();
}

} // namespace app
