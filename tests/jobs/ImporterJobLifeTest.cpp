// The life of a job, two thousand times over, stopped at some time between before its tool has come
// to itself and after it has ended: one report each, and nothing is left.

#include "ChildTest.h"
#include "JobFolders.h"
#include "WaitUntil.h"
#include "jobs/ImporterJob.h"
#include "platform/PrivateFiles.h"

#include <QCoreApplication>
#include <QTimer>

#include <map>
#include <random>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace jobs;

namespace {

class ImporterJobLifeTest : public ChildTest {
protected:
    ImporterJobLifeTest() {
        QDir().mkpath(support_);
        QDir().mkpath(output_);
        // The tool of these tests leaves no package: it is there already.
        makeFile(output_ + u"/route.nxd"_s);
    }

    JobPlan plan(std::vector<QString> arguments) {
        EXPECT_FALSE(
            platform::createPrivateFolder(temporary_.toStdString(), platform::Parents::MustExist));
        auto log = platform::createPrivateLog((temporary_ + u"/route.log"_s).toStdString());
        EXPECT_FALSE(log.failure);
        return {.tool = QStringLiteral(CHILD_HELPER),
                .arguments = QStringList(arguments.begin(), arguments.end()),
                .temporaryFolder = temporary_,
                .logPath = temporary_ + u"/route.log"_s,
                .log = std::move(log.file),
                .supportFolder = support_,
                .outputFolder = output_,
                .requiredFiles = {u"route.nxd"_s},
                .pointerName = u"last-route.txt"_s,
                .packageFiles = {},
                .failureDetail = [](const QString&) { return QString(); }};
    }

    const QTemporaryDir root_;
    const QString temporary_ = root_.filePath(u"job"_s);
    const QString support_ = root_.filePath(u"support"_s);
    const QString output_ = root_.filePath(u"package"_s);
};

TEST_F(ImporterJobLifeTest, every_life_is_reported_exactly_once_whenever_it_is_stopped) {
    constexpr int lives = 2000;
    constexpr unsigned seed = 20261121;
    std::mt19937 random(seed);
    std::vector<int> reports(lives);
    std::map<JobOutcome, int> outcomes;
    const int descriptors = openDescriptors();
    for (int life = 0; life < lives; ++life) {
        // As in the window: one at a time, and the next one at once after the end of the last.
        const bool endsItself = random() % 2 == 0;
        const std::chrono::milliseconds delay(random() % 5);
        const auto job = std::make_shared<ImporterJob>(
            plan(endsItself ? std::vector{u"exit"_s, u"0"_s} : std::vector{u"hang"_s}));
        bool isStopped = false;
        const auto stop = [&] {
            job->stop();
            isStopped = true;
        };
        ASSERT_FALSE(job->start([&, life](const auto& ended, const JobReport& report) {
            EXPECT_EQ(ended, job);
            ++reports[size_t(life)];
            ++outcomes[report.outcome];
            const bool isPlausible = report.outcome == JobOutcome::Cancelled ||
                                     (endsItself && report.outcome == JobOutcome::Succeeded);
            EXPECT_TRUE(isPlausible) << "life " << life << ": " << int(report.outcome);
            EXPECT_FALSE(QFileInfo::exists(temporary_));
        })) << "life "
            << life;
        if (delay == 0ms)
            stop();
        else
            QTimer::singleShot(delay, Qt::PreciseTimer, stop);
        while (reports[size_t(life)] == 0 || !isStopped)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    QCoreApplication::processEvents();
    for (const int count : reports)
        ASSERT_EQ(count, 1);
    EXPECT_GT(outcomes[JobOutcome::Cancelled], lives / 2);
    EXPECT_GT(outcomes[JobOutcome::Succeeded], lives / 50)
        << "the stops came too early to test anything";
    // A stopped child is looked at once more after the patience, and held until then.
    EXPECT_TRUE(waitUntil([&] { return openDescriptors() <= descriptors + 2; }))
        << openDescriptors() << " instead of " << descriptors;
    EXPECT_TRUE(QDir(support_).entryList(QDir::Files) ==
                QStringList({u"last-route.txt"_s, u"letzter-import.log"_s}));
}

} // namespace
