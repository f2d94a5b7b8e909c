#pragma once

#include "app/ControlPainter.h"
#include "app/MainWindow.h"
#include "app/PlaceRows.h"
#include "app/Sentences.h"
#include "jobs/JobRunner.h"
#include "jobs/StationList.h"
#include "look/controls/Field.h"
#include "look/controls/PlaceList.h"
#include "search/PlaceSearch.h"

#include <QObject>

#include <memory>
#include <optional>

namespace app {

// The one controller. It connects and does nothing else: what a person does goes to the search, the
// job or the stations; what comes out of them is said in a sentence, and `updateControls` shows the
// state. There is at most one search and one job at a time. Main thread.
class NXImportApp : public QObject {
    Q_OBJECT
public:
    using Mode = app::Mode;

    explicit NXImportApp(Mode startMode);

    // Keeps the language, builds window and menus and shows them. Once, before the event loop.
    void applicationDidFinishLaunching();

    MainWindow* window() const { return window_.get(); }

private:
    Mode mode() const { return window_->selectedMode(); }
    bool routeMode() const { return mode() == Mode::Route; }
    bool searching() const { return search_.isRunning(); }
    bool importing() const { return job_.isRunning(); }
    bool busy() const { return searching() || importing(); }
    const QList<search::ResultRow>& results() const { return search_.found().rows; }
    State state() const;

    void makeWindow();
    void connectControls();

    // The window follows the state.
    void setStatus(const QString& text, StatusKind kind = StatusKind::Plain) {
        window_->setStatus(text, kind);
    }
    void updateControls() { painter_.apply(state(), *window_); }
    void modeChanged();
    void updateCredits();
    void routeMapChanged() { updateCredits(); }
    void endpointChanged();
    // By the person, also the one that was chosen already.
    void endpointChosen(int index) {
        endpointChanged();
        if (index == customEndpoint)
            window_->endpointField->setFocus();
    }

    void search();
    void searchEnded(const QString& failure);
    void controlTextDidChange();
    void showResults() { resultModel_.setRows(rowsOf(results(), window_->layoutDirection())); }
    void tableSelectionDidChange();
    void activateResult();

    void addStation();
    void removeStation();
    void moveStation(int offset);
    void showStations(std::optional<int> selected, const QString& text);

    void download();
    void calculateRoute();
    void startJob(jobs::JobKind kind, jobs::Preparation preparation);
    void jobEnded(jobs::JobKind kind, const jobs::JobReport& report);
    void cancel();
    void showInFinder();

    bool applicationShouldTerminate();
    void applicationWillTerminate() {
        search_.stop();
        job_.stop();
    }

    void chooseLanguage();

    const Mode startMode_;
    std::unique_ptr<MainWindow> window_;
    look::PlaceListModel resultModel_;
    look::PlaceListModel stationModel_;
    search::PlaceSearch search_;
    jobs::StationList stations_;
    jobs::JobRunner job_;
    ControlPainter painter_;
    bool terminationPending_ = false; // the program ends as soon as the job has
};

} // namespace app
