#include "ScriptedPlan.h"
#include "TurnUntil.h"
#include "jobs/JobRunner.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#ifdef __linux__
#include <sys/inotify.h>
#include <unistd.h>
#endif

#include <cstring>

namespace {

void write(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(bytes), bytes.size());
}

// One job over a tool that is a shell script, in folders of the test's own.
class ImporterJobTest : public testing::Test, protected ScriptedPlan {
protected:
    JobReport run(const QByteArray& script) {
        start(script);
        return awaitReport();
    }

    void start(const QByteArray& script) {
        job_ = std::make_shared<ImporterJob>(plan(script));
        EXPECT_FALSE(job_->start([this](const auto& job, const JobReport& report) {
            EXPECT_EQ(job, job_);
            report_ = report;
            ++reports_;
        }));
    }

    JobReport awaitReport() {
        EXPECT_TRUE(turnUntil([&] { return reports_ > 0; }));
        EXPECT_EQ(reports_, 1);
        // In every case the folder goes and the log is kept.
        EXPECT_FALSE(QFileInfo::exists(temporary_));
        return report_;
    }

    std::shared_ptr<ImporterJob> job_;
    JobReport report_{};
    int reports_ = 0;
};

} // namespace

TEST_F(ImporterJobTest, a_whole_package_is_a_success_and_gets_its_pointer) {
    const JobReport report = run(makePackage + "\necho done");
    EXPECT_EQ(report.outcome, JobOutcome::Succeeded);
    EXPECT_EQ(report.outputFolder, output_);
    EXPECT_EQ(report.mainFile, u"origin.nxd"_s);
    EXPECT_EQ(contents(pointer_), (output_ + u"/origin.nxd\n"_s).toUtf8());
    EXPECT_EQ(contents(output_ + u"/extra.json"_s), "extra");
    EXPECT_EQ(contents(keptLog_), "done\n");
}

TEST_F(ImporterJobTest, the_tool_gets_arguments_folder_and_streams) {
    run(R"(pwd; printf '%s|' "$@"; cat; echo err >&2; exit 3)");
    EXPECT_EQ(contents(keptLog_), (temporary_ + u'\n' + output_ + u"|two words|err\n"_s).toUtf8());
}

TEST_F(ImporterJobTest, status_0_without_every_file_is_a_failure) {
    const JobReport report = run(R"(mkdir "$1" && touch "$1/origin.nxd"; echo half)");
    EXPECT_EQ(report.outcome, JobOutcome::Failed);
    EXPECT_EQ(report.failureDetail, u"half\n"_s);
    EXPECT_FALSE(QFileInfo::exists(pointer_));
    EXPECT_FALSE(QFileInfo::exists(output_ + u"/extra.json"_s));
    EXPECT_TRUE(QFileInfo::exists(output_ + u"/origin.nxd"_s));
}

TEST_F(ImporterJobTest, any_other_end_is_a_failure_even_with_every_file) {
    for (const char* end : {"exit 1", "kill -SEGV $$", "kill -TERM $$"}) {
        SCOPED_TRACE(end);
        reports_ = 0;
        EXPECT_EQ(run(makePackage + "\n" + end).outcome, JobOutcome::Failed);
        EXPECT_FALSE(QFileInfo::exists(pointer_));
        QDir(output_).removeRecursively();
    }
}

TEST_F(ImporterJobTest, a_failure_keeps_the_pointer_and_replaces_the_log) {
    write(pointer_, "/old/origin.nxd\n");
    write(keptLog_, "old");
    run("echo new; exit 1");
    EXPECT_EQ(contents(pointer_), "/old/origin.nxd\n");
    EXPECT_EQ(contents(keptLog_), "new\n");
}

TEST_F(ImporterJobTest, a_pointer_that_cannot_be_written_is_told_apart) {
    QDir().mkpath(pointer_ + u"/not-empty"_s);
    const JobReport report = run(makePackage);
    EXPECT_EQ(report.outcome, JobOutcome::SucceededWithoutPointer);
    EXPECT_EQ(report.outputFolder, output_);
}

TEST_F(ImporterJobTest, a_link_at_the_pointer_is_replaced_and_never_written_through) {
    const QString foreign = root_.filePath(u"foreign"_s);
    write(foreign, "mine");
    QFile::link(foreign, pointer_);
    EXPECT_EQ(run(makePackage).outcome, JobOutcome::Succeeded);
    EXPECT_EQ(contents(foreign), "mine");
    EXPECT_FALSE(QFileInfo(pointer_).isSymLink());
}

TEST_F(ImporterJobTest, a_link_at_the_kept_log_is_replaced_and_never_written_through) {
    const QString foreign = root_.filePath(u"foreign"_s);
    write(foreign, "mine");
    QFile::link(foreign, keptLog_);
    run("echo log; exit 1");
    EXPECT_EQ(contents(foreign), "mine");
    EXPECT_EQ(contents(keptLog_), "log\n");
}

TEST_F(ImporterJobTest, a_folder_at_the_kept_log_stays_and_no_log_is_kept) {
    QDir().mkpath(keptLog_ + u"/mine"_s);
    EXPECT_EQ(run("echo log; exit 1").outcome, JobOutcome::Failed);
    EXPECT_TRUE(QFileInfo(keptLog_ + u"/mine"_s).isDir());
    EXPECT_EQ(QDir(support_).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
              QStringList{u"letzter-import.log"_s});
}

TEST_F(ImporterJobTest, the_kept_log_is_whole_however_long_and_its_owners_alone) {
    run("dd if=/dev/zero bs=100000 count=3 2>/dev/null; exit 1");
    EXPECT_EQ(contents(keptLog_).size(), 300000);
    EXPECT_EQ(modeOf(keptLog_), 0600U);
}

#ifdef __linux__
// Whoever follows the pointer finds everything.
TEST_F(ImporterJobTest, the_pointer_comes_after_the_files_of_the_package) {
    QDir().mkpath(output_);
    const platform::UniqueFd watch(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
    for (const QString& folder : {support_, output_})
        ::inotify_add_watch(watch.get(), qPrintable(folder), IN_MOVED_TO);
    run(R"(touch "$1/origin.nxd" "$1/norvaxel3d.json")");
    char bytes[4096];
    const ssize_t size = ::read(watch.get(), bytes, sizeof bytes);
    QByteArrayList names;
    for (ssize_t at = 0; at < size;) {
        inotify_event event{};
        std::memcpy(&event, bytes + at, sizeof event);
        names += bytes + at + sizeof event;
        at += ssize_t(sizeof event + event.len);
    }
    EXPECT_EQ(names, QByteArrayList({"extra.json", "last-import.txt", "letzter-import.log"}));
}
#endif

TEST_F(ImporterJobTest, a_stopped_job_is_cancelled_whatever_the_tool_says) {
    start("trap 'exit 0' TERM\n" + makePackage + "\necho ready\nwhile :; do sleep 0.01; done");
    EXPECT_TRUE(turnUntil([&] { return contents(temporary_ + u"/import.log"_s) == "ready\n"; }));
    job_->stop();
    EXPECT_EQ(awaitReport().outcome, JobOutcome::Cancelled);
    EXPECT_FALSE(QFileInfo::exists(pointer_));
    EXPECT_TRUE(QFileInfo::exists(output_ + u"/origin.nxd"_s));
}

TEST_F(ImporterJobTest, a_failed_start_leaves_nothing_but_the_last_log_and_says_why) {
    write(keptLog_, "old");
    JobPlan broken = plan("exit 0");
    broken.tool = root_.filePath(u"none"_s);
    job_ = std::make_shared<ImporterJob>(std::move(broken));
    const auto failure = job_->start([this](const auto&, const JobReport&) { ++reports_; });
    EXPECT_EQ(failure, std::errc::no_such_file_or_directory);
    EXPECT_FALSE(QFileInfo::exists(temporary_));
    EXPECT_EQ(contents(keptLog_), "old") << "of the last job that ran";
    QCoreApplication::processEvents();
    EXPECT_EQ(reports_, 0);
}
