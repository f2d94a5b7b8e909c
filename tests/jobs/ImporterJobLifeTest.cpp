// The life of a job, two thousand times over, stopped at some time between before its tool has come
// to itself and after it has ended: one report each, and nothing is left.

#include "ChildTest.h"
#include "ScriptedPlan.h"
#include "WaitUntil.h"
#include "jobs/JobRunner.h"

#include <QCoreApplication>
#include <QTimer>

#include <map>
#include <random>

using namespace std::chrono_literals;

namespace {

class ImporterJobLifeTest : public ChildTest, protected ScriptedPlan {
protected:
    ImporterJobLifeTest() { makePackageBefore(); }
};

TEST_F(ImporterJobLifeTest, every_life_is_reported_exactly_once_whenever_it_is_stopped) {
    const QString helper = QStringLiteral(CHILD_HELPER);
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
            planFor(helper, endsItself ? QStringList{u"exit"_s, u"0"_s} : QStringList{u"hang"_s}));
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
    EXPECT_TRUE(waitUntil([&] { return openDescriptors() == descriptors; }))
        << openDescriptors() << " instead of " << descriptors;
    EXPECT_TRUE(QDir(support_).entryList(QDir::Files) ==
                QStringList({u"last-import.txt"_s, u"letzter-import.log"_s}));
}

} // namespace
