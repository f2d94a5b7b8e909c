#include "app/NXImportApp.h"
#include "jobs/PlaceImport.h"
#include "localization/NXLocal.h"
#include "look/controls/Field.h"
#include "look/controls/PlaceList.h"
#include "look/controls/PopUp.h"
#include "look/controls/Segments.h"
#include "platform/FileBrowser.h"
#include "search/NXPhotonSearch.h"

#include <QCoreApplication>
#include <QPointer>

using namespace Qt::StringLiterals;

namespace app {

using localization::NXLocal;

namespace {

/// Where the importer tool lies: beside the program, as the plug-in's package has them.
QString toolFolder() {
#ifdef Q_OS_MACOS
    // Beside the bundle, which holds the program in Contents/MacOS.
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + u"/../../.."_s);
#else
    return QCoreApplication::applicationDirPath();
#endif
}

} // namespace

void NXImportApp::download() {
    if (routeMode()) {
        calculateRoute();
        return;
    }
    const int row = window_->selectedResult();
    if (importing_ || searching_ || row < 0 || row >= results_.size())
        return;
    const search::ResultRow& place = results_.at(row);
    const jobs::PlaceRequest request{
        .searchedQuery = searchedQuery_,
        .photonResponse = photonResponse_,
        .selectedRow = row,
        .name = place.name,
        .feature = place.feature,
        .radiusIndex = window_->radius->currentIndex(),
        .source = window_->endpoint->currentText(),
        .isDirect = window_->endpoint->currentIndex() == directEndpoint,
        .endpoint = window_->endpointField->text(),
    };
    startJob(JobKind::Place,
             jobs::preparePlaceImport(request, toolFolder(), QDateTime::currentDateTime()));
}

void NXImportApp::calculateRoute() {
    if (busy())
        return;
    const jobs::RouteRequest request{
        .stations = stations_.stations(),
        .endpoint = window_->routeEndpointField->text(),
        .travel = static_cast<jobs::Travel>(window_->travel->selectedSegment()),
    };
    startJob(JobKind::Route,
             jobs::prepareRouteImport(request, toolFolder(), QDateTime::currentDateTime()));
}

void NXImportApp::startJob(JobKind kind, jobs::Preparation preparation) {
    if (const auto* refusal = std::get_if<jobs::Refusal>(&preparation)) {
        setStatus(refusalText(kind, *refusal), StatusKind::Error);
        return;
    }
    importing_ = true;
    importTask_ = std::make_shared<jobs::ImporterJob>(std::move(std::get<jobs::JobPlan>(preparation)));
    completed_.reset();
    setStatus(progressText(kind, static_cast<jobs::Travel>(window_->travel->selectedSegment())),
              StatusKind::Plain);
    updateControls();
    const auto failure =
        importTask_->start([app = QPointer(this), kind](const auto& job, const jobs::JobReport& report) {
            if (app)
                app->jobEnded(kind, job, report);
        });
    if (failure) {
        importTask_.reset();
        importing_ = false;
        setStatus(startFailureText(kind, failure), StatusKind::Error);
        updateControls();
    }
}

void NXImportApp::jobEnded(JobKind kind, const std::shared_ptr<jobs::ImporterJob>& job,
                           const jobs::JobReport& report) {
    if (job != importTask_)
        return; // a newer job owns the state
    importing_ = false;
    importTask_.reset();
    const bool failed = report.outcome == jobs::JobOutcome::Failed;
    if (!failed && report.outcome != jobs::JobOutcome::Cancelled)
        completed_ = Package{report.outputFolder, report.mainFile};
    const QString message = outcomeText(kind, report);
    setStatus(message, failed ? StatusKind::Error : StatusKind::Plain);
    updateControls();
    if (terminationPending_)
        window_->close();
    else if (failed)
        window_->showAlert(failureTitle(kind), message, NXLocal(u"OK"_s));
}

void NXImportApp::cancel() {
    if (searching_) {
        ++searchGeneration_;
        if (searchTask_)
            searchTask_->cancel();
        searchTask_.reset();
        searching_ = false;
        window_->table->setEmptyText(NXLocal(u"Suche abgebrochen"_s));
        setStatus(NXLocal(u"Suche abgebrochen."_s), StatusKind::Plain);
        updateControls();
    }
    if (importing_) {
        importTask_->stop();
        // The controls follow when the tool has ended.
        setStatus(stoppingText(routeMode() ? JobKind::Route : JobKind::Place), StatusKind::Plain);
    }
}

void NXImportApp::showInFinder() {
    if (completed_)
        platform::showInFileBrowser(completed_->directory + u'/' + completed_->filename);
}

bool NXImportApp::applicationShouldTerminate() {
    if (!importing_) {
        // Also where an alert or a dialog is open.
        QCoreApplication::exit();
        return true;
    }
    if (!terminationPending_) {
        terminationPending_ = true;
        cancel();
    }
    return false;
}

void NXImportApp::applicationWillTerminate() {
    if (searchTask_)
        searchTask_->cancel();
    if (importTask_)
        importTask_->stop();
}

} // namespace app
