#include "app/NXImportApp.h"
#include "app/Services.h"
#include "localization/NXLocal.h"
#include "look/controls/Button.h"
#include "look/controls/Field.h"
#include "look/controls/PlaceList.h"
#include "look/text/Label.h"
#include "platform/MainQueue.h"
#include "search/NXPhotonSearch.h"
#include "search/NXText.h"
#include "search/PhotonQuery.h"

#include <QPointer>

using namespace Qt::StringLiterals;

namespace app {

using localization::filled;
using localization::NXLocal;

void NXImportApp::search() {
    if (importing_)
        return;
    const QString query = search::NXText(window_->query->text());
    if (query.isEmpty() || query.size() > search::longestQuery) {
        setStatus(NXLocal(u"Bitte einen Ortsnamen mit höchstens 300 Zeichen eingeben."_s),
                  StatusKind::Error);
        return;
    }
    const quint64 generation = ++searchGeneration_;
    if (searchTask_)
        searchTask_->cancel();
    searching_ = true;
    clearResults();
    window_->table->setEmptyText(NXLocal(u"Suche läuft …"_s));
    setStatus(NXLocal(u"Orte werden gesucht …"_s), StatusKind::Plain);
    updateControls();

    searchTask_ = search::NXPhotonSearch::make();
    searchTask_->start(search::photonQuery(QUrl(services::geocoder), query),
                       [app = QPointer(this), generation,
                        query](const std::optional<QByteArray>& body, QString message) {
                           QList<search::ResultRow> rows;
                           if (body) {
                               if (auto answer = search::readPhotonAnswer(*body, query))
                                   rows = std::move(*answer);
                               else
                                   message = NXLocal(
                                       u"Die Ortssuche hat eine unlesbare Antwort geliefert."_s);
                           }
                           // A turn of its own: what the person did while the answer was read comes
                           // first.
                           platform::postToMain([=, response = body.value_or(QByteArray())] {
                               if (app)
                                   app->applyAnswer(generation, query, response, message, rows);
                           });
                       });
}

void NXImportApp::applyAnswer(quint64 generation, const QString& query, const QByteArray& body,
                              const QString& message, QList<search::ResultRow> rows) {
    if (generation != searchGeneration_)
        return;
    searching_ = false;
    searchTask_.reset();
    showResults(std::move(rows));
    window_->table->setEmptyText(NXLocal(u"Keine passenden Orte gefunden"_s));
    if (!message.isEmpty()) {
        setStatus(message, StatusKind::Error);
    } else if (!results_.isEmpty()) {
        photonResponse_ = body;
        searchedQuery_ = query;
        window_->hint->setText(filled(NXLocal(u"%lu Treffer · bitte den richtigen Ort auswählen"_s),
                                      {results_.size()}));
        setStatus(
            NXLocal(
                u"Wähle einen Treffer aus. Gleichnamige Orte stehen mit Region und Land in der Liste."_s),
            StatusKind::Plain);
    } else {
        setStatus(NXLocal(u"Kein Ort gefunden. Ergänze den Namen um Land oder Region."_s),
                  StatusKind::Plain);
    }
    updateControls();
}

void NXImportApp::controlTextDidChange() {
    if (importing_)
        return;
    ++searchGeneration_;
    if (searchTask_)
        searchTask_->cancel();
    searchTask_.reset();
    searching_ = false;
    clearResults();
    window_->hint->setText(NXLocal(u"Suchergebnisse · wähle einen Ort aus"_s));
    setStatus(routeMode()
                  ? NXLocal(u"Neuen Ort suchen. Deine bisherigen Stationen bleiben erhalten."_s)
                  : NXLocal(u"Gib einen Ort ein und starte die Suche."_s),
              StatusKind::Plain);
    updateControls();
}

void NXImportApp::clearResults() {
    photonResponse_.clear();
    searchedQuery_.clear();
    showResults({});
}

void NXImportApp::showResults(QList<search::ResultRow> rows) {
    results_ = std::move(rows);
    QList<look::PlaceRow> shown;
    for (const search::ResultRow& row : results_)
        shown.append({row.name, row.detail});
    resultModel_.setRows(shown);
}

// A double click or Return on a result: on to what comes next in this mode.
void NXImportApp::activateResult() {
    if (routeMode())
        addStation();
    else
        window_->downloadButton->setFocus(Qt::TabFocusReason);
}

void NXImportApp::focusResults() {
    if (results_.isEmpty())
        return;
    window_->table->setFocus(Qt::TabFocusReason);
    if (window_->selectedResult() < 0)
        window_->table->setCurrentIndex(resultModel_.index(0, 0));
}

} // namespace app
