#pragma once

#include "app/ControlStates.h"
#include "app/JobWords.h"
#include "app/MainWindow.h"
#include "jobs/ImporterJob.h"
#include "jobs/StationList.h"
#include "look/controls/PlaceListModel.h"
#include "search/PhotonAnswer.h"

#include <QObject>
#include <QPointer>

#include <memory>
#include <optional>
#include <span>
#include <utility>

namespace search {
class NXPhotonSearch;
}

namespace app {


// Controls, each with whether a person can use it.
using Usable = std::span<const std::pair<QWidget*, bool>>;

// The one controller: it holds the whole state, and connects. A person's action or an answer comes
// in, a pure function or a job does the work, `updateControls` shows the result. There is at most
// one search and one job at a time. Everything here runs on the main thread.
class NXImportApp : public QObject {
    Q_OBJECT
public:
    enum class Mode { Place, Route };

    explicit NXImportApp(Mode startMode);
    ~NXImportApp() override;

    // Settles the language, builds menus and window and shows them. Once, before the event loop.
    void applicationDidFinishLaunching();

    MainWindow* window() const { return window_.get(); }

private:
    struct Package {
        QString directory;
        QString filename; // the main file in `directory`
    };

    void makeMenu(); // Menus.cpp
    void makeWindow();
    void connectControls();

    // State and rules (NXImportApp.cpp)
    bool routeMode() const;
    bool busy() const { return searching_ || importing_; }
    void setStatus(const QString& text, StatusKind kind);
    void updateControls();
    void modeChanged();
    void updateCredits();
    void routeMapChanged();
    void endpointChanged();
    void tableSelectionDidChange();

    // Where the keyboard goes (FocusFlow.cpp)
    void setUsable(const Usable& usable);
    // To be called when what will be usable is so already, and the rest still is.
    void keepFocus(const Usable& usable);
    // To be called before the half of the other mode goes.
    void leaveHalf(bool isRouteMode);
    QWidget* worksOn(const QWidget* control) const;

    // Searching (SearchFlow.cpp)
    void search();
    void controlTextDidChange();
    void clearResults();
    void showResults(QList<search::ResultRow> rows);
    void applyAnswer(quint64 generation, const QString& query, const QByteArray& body,
                     const QString& message, QList<search::ResultRow> rows);
    void focusResults();
    void activateResult();

    // The stations of a route (StationFlow.cpp)
    void addStation();
    void removeStation();
    void moveStation(int offset);
    void showStations(std::optional<int> selected, const QString& text);

    // Jobs (JobFlow.cpp)
    void download();
    void calculateRoute();
    void startJob(JobKind kind, jobs::Preparation preparation);
    void jobEnded(JobKind kind, const std::shared_ptr<jobs::ImporterJob>& job, const jobs::JobReport& report);
    void cancel();
    void showInFinder();

    // Ending the program (JobFlow.cpp)
    bool applicationShouldTerminate();
    void applicationWillTerminate();

    void chooseLanguage();
    void saveLanguage(const std::string& language);

    const Mode startMode_;
    std::unique_ptr<MainWindow> window_;

    look::PlaceListModel resultModel_;
    look::PlaceListModel stationModel_;
    jobs::StationList stations_;
    QList<search::ResultRow> results_;  // of the search that is shown, at most `mostResults`
    QByteArray photonResponse_; // the answer that `results_` came from; empty without results
    QString searchedQuery_;     // the query that `results_` answer; empty without results
    std::shared_ptr<search::NXPhotonSearch> searchTask_;
    std::shared_ptr<jobs::ImporterJob> importTask_;
    std::optional<Package> completed_; // the last job's package, if it succeeded
    quint64 searchGeneration_ = 0;     // an answer to another generation changes nothing
    bool searching_ = false;
    bool importing_ = false;
    bool terminationPending_ = false; // the program ends as soon as the job has
    // What keepFocus has seen last: whether work ran, which, and what had the focus when it began.
    bool wasBusy_ = false;
    bool startedSearch_ = false;
    QPointer<QWidget> startedFrom_;
};

} // namespace app
