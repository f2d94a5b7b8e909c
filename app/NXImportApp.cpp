#include "app/NXImportApp.h"

#include "app/LanguageDialog.h"
#include "app/Menus.h"
#include "app/Services.h"
#include "jobs/JobPreparation.h"
#include "jobs/PlaceImport.h"
#include "jobs/RouteImport.h"
#include "localization/Language.h"
#include "localization/NXLocal.h"
#include "look/controls/Button.h"
#include "look/controls/PopUp.h"
#include "look/controls/Segments.h"
#include "look/text/Label.h"
#include "platform/FileBrowser.h"
#include "platform/QuitSignals.h"

#include <QApplication>
#include <QCheckBox>
#include <QPointer>
#include <QShortcut>

#include <utility>

namespace app {

NXImportApp::NXImportApp(Mode startMode)
    : startMode_(startMode), search_(QUrl(services::geocoder), failureText,
                                     [this](const QString& failure) { searchEnded(failure); }),
      job_([this](auto kind, const auto& report) { jobEnded(kind, report); }) {}

void NXImportApp::applicationDidFinishLaunching() {
    nxui::persistInitialLanguage(nxui::Product::ThreeD);
    makeWindow();
    addMenus(*window_);
    window_->mayClose = [this] { return applicationShouldTerminate(); };
    connect(qApp, &QCoreApplication::aboutToQuit, this, &NXImportApp::applicationWillTerminate);
    platform::takeQuitSignals([app = QPointer(this)] {
        if (app)
            app->window_->close();
    });
    window_->showCentred();
}

void NXImportApp::makeWindow() {
    window_ = std::make_unique<MainWindow>(startMode_);
    window_->table->setModel(&resultModel_);
    window_->stationTable->setModel(&stationModel_);
    endpointChanged();
    connectControls();
    modeChanged();
    window_->query->setFocus();
}

void NXImportApp::connectControls() {
    MainWindow* w = window_.get();
    connect(w->mode, &look::Segments::selectionChanged, this, &NXImportApp::modeChanged);
    connect(w->query, &QLineEdit::textChanged, this, &NXImportApp::controlTextDidChange);
    connect(w->query, &QLineEdit::returnPressed, this, &NXImportApp::search);
    connect(w->searchButton, &QPushButton::clicked, this, &NXImportApp::search);
    connect(w->endpoint, &QComboBox::currentIndexChanged, this, &NXImportApp::endpointChanged);
    connect(w->endpoint, &QComboBox::activated, this, &NXImportApp::endpointChosen);
    connect(w->travel, &look::Segments::selectionChanged, this, &NXImportApp::routeMapChanged);
    connect(w->routeMapCheckbox, &QCheckBox::toggled, this, &NXImportApp::routeMapChanged);
    connect(w->table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &NXImportApp::tableSelectionDidChange);
    connect(w->stationTable->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &NXImportApp::updateControls);
    connect(w->downloadButton, &QPushButton::clicked, this, &NXImportApp::download);
    connect(w->table, &QAbstractItemView::activated, this, &NXImportApp::activateResult);
    connect(w->addStationButton, &QPushButton::clicked, this, &NXImportApp::addStation);
    const auto connectStation = [this, w](QPushButton* button, const QKeySequence& key, auto act) {
        connect(button, &QPushButton::clicked, this, act);
        new QShortcut(key, w->stationTable, this, act, Qt::WidgetShortcut);
        button->setToolTip(key.toString(QKeySequence::NativeText));
    };
    connectStation(w->removeStationButton, Qt::Key_Delete, [this] { removeStation(); });
    connectStation(w->moveStationUpButton, Qt::ALT | Qt::Key_Up, [this] { moveStation(-1); });
    connectStation(w->moveStationDownButton, Qt::ALT | Qt::Key_Down, [this] { moveStation(+1); });
    connect(w->languageButton, &QPushButton::clicked, this, &NXImportApp::chooseLanguage);
    connect(w->finderButton, &QPushButton::clicked, this, &NXImportApp::showInFinder);
    connect(w->cancelButton, &QPushButton::clicked, this, &NXImportApp::cancel);
}

State NXImportApp::state() const {
    return {
        .isRouteMode = routeMode(),
        .searching = searching(),
        .importing = importing(),
        .results = results().size(),
        .selectedResult = window_->selectedResult(),
        .stations = stations_.size(),
        .selectedStation = window_->selectedStation(),
        .endpointIndex = window_->endpoint->currentIndex(),
        .hasCompleted = job_.finished().has_value(),
    };
}

void NXImportApp::modeChanged() {
    window_->subtitle->setText(subtitleText(mode()));
    updateCredits();
    setStatus(welcomeText(mode()));
    updateControls();
}

void NXImportApp::updateCredits() {
    window_->credit->setText(creditText(mode()));
}

void NXImportApp::endpointChanged() {
    window_->endpointField->setText(services::dataAddress(window_->endpoint->currentIndex()));
    updateControls();
}

void NXImportApp::search() {
    if (importing())
        return;
    const QString query = search::NXText(window_->query->text());
    if (query.isEmpty() || query.size() > search::longestQuery) {
        setStatus(badQueryStatus(), StatusKind::Error);
        return;
    }
    search_.begin(query);
    showResults();
    window_->table->setEmptyText(searchingInstead());
    setStatus(searchingStatus());
    updateControls();
}

void NXImportApp::searchEnded(const QString& failure) {
    showResults();
    window_->table->setEmptyText(noPlacesInstead());
    if (!failure.isEmpty()) {
        setStatus(failure, StatusKind::Error);
    } else if (results().isEmpty()) {
        setStatus(noPlacesStatus());
    } else {
        window_->hint->setText(placesHint(results().size()));
        setStatus(placesStatus());
    }
    updateControls();
}

void NXImportApp::controlTextDidChange() {
    if (importing())
        return;
    search_.forget();
    showResults();
    window_->hint->setText(editedHint());
    setStatus(editedStatus(mode()));
    updateControls();
}

void NXImportApp::tableSelectionDidChange() {
    updateControls();
    if (!busy() && window_->selectedResult() >= 0)
        setStatus(selectedStatus(mode()));
}

// A double click or Return on a result: on to what comes next in this mode.
void NXImportApp::activateResult() {
    if (routeMode())
        addStation();
    else
        window_->downloadButton->setFocus(Qt::TabFocusReason);
}

void NXImportApp::addStation() {
    const int row = window_->selectedResult();
    if (busy() || row < 0 || row >= results().size())
        return;
    const search::ResultRow& place = results().at(row);
    const auto added = stations_.add({place.name, place.detail, place.longitude, place.latitude});
    showStations(added, addedStationStatus(stations_.size()));
    if (added)
        window_->focusQuery();
}

void NXImportApp::removeStation() {
    if (!importing())
        showStations(stations_.remove(window_->selectedStation()), removedStationStatus());
}

void NXImportApp::moveStation(int offset) {
    if (!importing())
        showStations(stations_.move(window_->selectedStation(), offset), movedStationStatus());
}

void NXImportApp::showStations(std::optional<int> selected, const QString& text) {
    if (!selected)
        return; // the edit was not possible
    stationModel_.setRows(rowsOf(stations_.stations(), window_->layoutDirection()));
    window_->selectStation(*selected);
    setStatus(text);
    updateControls();
}

void NXImportApp::download() {
    if (routeMode()) {
        calculateRoute();
        return;
    }
    const int row = window_->selectedResult();
    if (busy() || row < 0 || row >= results().size())
        return;
    const search::FoundPlaces& found = search_.found();
    const jobs::PlaceRequest request{
        .searchedQuery = found.query,
        .photonResponse = found.response,
        .selectedRow = row,
        .name = found.rows.at(row).name,
        .feature = found.rows.at(row).feature,
        .radiusIndex = window_->radius->currentIndex(),
        .source = window_->endpoint->currentText(),
        .isDirect = window_->endpoint->currentIndex() == directEndpoint,
        .endpoint = window_->endpointField->text(),
    };
    startJob(Mode::Place,
             jobs::preparePlaceImport(request, jobs::toolFolder(), QDateTime::currentDateTime()));
}

void NXImportApp::calculateRoute() {
    if (busy())
        return;
    const jobs::RouteRequest request{
        .stations = stations_.stations(),
        .endpoint = window_->routeEndpointField->text(),
        .travel = window_->selectedTravel(),
    };
    startJob(Mode::Route,
             jobs::prepareRouteImport(request, jobs::toolFolder(), QDateTime::currentDateTime()));
}

void NXImportApp::startJob(jobs::JobKind kind, jobs::Preparation preparation) {
    if (const auto* refusal = std::get_if<jobs::Refusal>(&preparation)) {
        setStatus(refusalText(kind, *refusal), StatusKind::Error);
        return;
    }
    if (const auto failure = job_.start(std::move(std::get<jobs::JobPlan>(preparation))))
        setStatus(startFailureText(kind, failure), StatusKind::Error);
    else
        setStatus(progressText(kind, window_->selectedTravel()));
    updateControls();
}

void NXImportApp::jobEnded(jobs::JobKind kind, const jobs::JobReport& report) {
    const bool hasFailed = report.outcome == jobs::JobOutcome::Failed;
    const QString message = outcomeText(kind, report);
    setStatus(message, hasFailed ? StatusKind::Error : StatusKind::Plain);
    updateControls();
    QApplication::alert(window_.get()); // the toolkit does nothing where the window is active
    if (terminationPending_)
        window_->close();
    else if (hasFailed)
        window_->showAlert(failureTitle(kind), message, localization::NXLocal(u"OK"));
}

void NXImportApp::cancel() {
    if (searching()) {
        search_.stop();
        window_->table->setEmptyText(cancelledSearchInstead());
        setStatus(cancelledSearchStatus());
        updateControls();
    }
    if (importing()) {
        job_.stop();
        // The controls follow when the tool has ended.
        setStatus(stoppingText(mode()));
    }
}

void NXImportApp::showInFinder() {
    if (const auto& package = job_.finished())
        platform::showInFileBrowser(package->directory + u'/' + package->filename);
}

bool NXImportApp::applicationShouldTerminate() {
    if (!importing()) {
        // Also where an alert or a dialog is open.
        QCoreApplication::exit();
        return true;
    }
    if (!std::exchange(terminationPending_, true))
        cancel();
    return false;
}

void NXImportApp::chooseLanguage() {
    if (!busy())
        offerLanguages(window_->pages(),
                       [this] { setStatus(languageNotSaved(), StatusKind::Error); });
}

} // namespace app
