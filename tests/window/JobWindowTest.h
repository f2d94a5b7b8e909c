#pragma once

#include "SearchWindowTest.h"

// One of the two jobs as the window shows it: the import of a place, the computing of a route.
struct ShownJob {
    const char* name;
    NXImportApp::Mode mode;
    QString title;     // of the main button
    QString busyTitle; // the same while the job runs
    QString progress;
    QString stopping;
    QString cancelled;
    QString finished;
    QString finishedWithoutPointer;
    QString heading;   // of a failure's alert
    QString failed;    // a failure; "%1" is what the importer said
    QString folder;    // of all packages
    const char* files; // of one package
    QString pointer;   // names the file that a package begins with
    QString entry;
    QByteArray output; // line of a script: the package's folder
    // Refusals: each says what is missing.
    const char* address;
    QString badAddress;
    QString noStart; // "%1" is the reason
};
void PrintTo(const ShownJob& kind, std::ostream* out);
extern const ShownJob placeJob;
extern const ShownJob routeJob;

// Base of the tests that hold for both jobs.
class JobWindowTest : public SearchWindowTest, public testing::WithParamInterface<const ShownJob*> {
protected:
    void SetUp() override;

    static const ShownJob& job() { return *GetParam(); }

    // A place or two stations are chosen; the job can begin.
    void startReady();
    // What was chosen is there as before, and the job can begin.
    void expectReady();
    void begin() { click(button("downloadButton")); }
    // Does the job and waits for its end.
    void toTheEnd();
    void cancel();
    // Begins: the sentence, no alert, nothing running, everything as it was.
    void expectRefusal(const QString& message);
    // The failure is told by the status and by an alert, which is closed.
    void expectFailure(const QString& message);
    static QString failed(const QString& detail) {
        return QString(job().failed).replace("%1"_L1, detail);
    }

    QStringList packages() const;
    QString inSupport(const QString& name) const { return supportFolder().filePath(name); }
    // A tool that leaves a whole package.
    static QByteArray wholePackage();
};

#define INSTANTIATE_FOR_BOTH_JOBS(suite)                                                           \
    INSTANTIATE_TEST_SUITE_P(Jobs, suite, testing::Values(&placeJob, &routeJob),                   \
                             [](const auto& kind) { return std::string(kind.param->name); })
