// What holds for every job before its tool starts: where its folders lie, and what it is refused
// for.

#include "jobs/JobPreparation.h"

#include "FullDisk.h"
#include "JobFolders.h"

#include <QFileInfo>
#include <QRegularExpression>

namespace {

class JobPreparationTest : public JobFolders {
protected:
    Preparation prepare() { return prepareJob(values_, inputs_, tools_); }
    JobPlan plan() { return std::get<JobPlan>(prepare()); }
    Refusal refusal() { return refusalIn(prepare()); }

    JobValues values_{
        .kind = JobKind::Place,
        .folders = {u"Pakete"_s, u"Arbeit-"_s, platform::Parents::Create},
        .log = {u"import.log"_s, Refusal::Log, [](const QString&) { return QString(); }},
        .package = {{u"origin.nxd"_s}, u"last.txt"_s}};
    JobInputs inputs_{
        .packageName = u"ulm"_s,
        .handOver = [] { return QList{JobFile{u"in.json"_s, "{}"}, JobFile{u"more"_s, "x"}}; },
        .arguments = [](const auto& handOver, const auto& output) -> QStringList {
            return {handOver, output};
        },
        .packageFiles = {}};
    const QString packages_ = support_ + u"/Pakete"_s;
};

TEST_F(JobPreparationTest, everything_is_made_but_the_package) {
    const JobPlan job = plan();
    const QString folder = job.temporaryFolder.path();
    EXPECT_EQ(QFileInfo(folder).path(), temporary_);
    const QRegularExpression name(u"^Arbeit-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"_s);
    EXPECT_TRUE(name.match(QFileInfo(folder).fileName()).hasMatch()) << qPrintable(folder);
    EXPECT_EQ(modeOf(folder), 0700U);
    for (const auto& [file, bytes] :
         {std::pair(u"in.json"_s, "{}"), {u"more"_s, "x"}, {u"import.log"_s, ""}}) {
        EXPECT_EQ(contents(folder + u'/' + file), bytes);
        EXPECT_EQ(modeOf(folder + u'/' + file), 0600U);
    }
    EXPECT_EQ(QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(),
              3);
    EXPECT_EQ(job.logPath, folder + u"/import.log"_s);
    EXPECT_TRUE(job.log);
    EXPECT_EQ(job.tool, tool_);
    EXPECT_EQ(job.supportFolder, support_);
    EXPECT_EQ(job.outputFolder, packages_ + u"/ulm"_s);
    EXPECT_EQ(job.arguments, QStringList({folder + u"/in.json"_s, job.outputFolder}));
    EXPECT_TRUE(QFileInfo(packages_).isDir());
    EXPECT_FALSE(QFileInfo::exists(job.outputFolder));
    EXPECT_NE(plan().temporaryFolder.path(), folder);
}

TEST_F(JobPreparationTest, the_first_of_all_obstacles_is_told) {
    const auto handOver = inputs_.handOver;
    QDir().rmdir(temporary_);
    makeFile(temporary_);
    makeFile(root_.filePath(u"home"_s));
    inputs_.handOver = [] { return Refusal::StationName; };
    values_.log.name = u"missing/log"_s;
    QFile::setPermissions(tool_, QFile::ReadOwner);
    EXPECT_EQ(std::get<Refusal>(prepare()), Refusal::ToolMissing) << "not executable";
    QFile::remove(tool_);
    EXPECT_EQ(std::get<Refusal>(prepare()), Refusal::ToolMissing);
    QDir().mkpath(tool_);
    EXPECT_EQ(std::get<Refusal>(prepare()), Refusal::ToolMissing) << "a folder";
    QDir().rmdir(tool_);
    makeFile(tool_, QFile::ReadOwner | QFile::ExeOwner);
    EXPECT_EQ(std::get<Refusal>(prepare()), Refusal::PackageFolder) << "no data folder";
    QFile::remove(root_.filePath(u"home"_s));
    QDir().mkpath(root_.filePath(u"home/.local/share"_s));
    makeFile(root_.filePath(u"home/.local/share/Norvaxel"_s));
    EXPECT_EQ(std::get<Refusal>(prepare()), Refusal::PackageFolder) << "no folder in it";
    QFile::remove(root_.filePath(u"home/.local/share/Norvaxel"_s));
    EXPECT_EQ(std::get<Refusal>(prepare()), Refusal::TemporaryFolder);
    QFile::remove(temporary_);
    EXPECT_EQ(refusal(), Refusal::StationName);
    inputs_.handOver = handOver;
    {
        const FullDisk full;
        EXPECT_EQ(refusal(), Refusal::HandOver);
    }
    for (const auto& block : {+[](const QString& path) { QDir().mkpath(path); },
                              +[](const QString& path) { makeFile(path); },
                              +[](const QString& path) { QFile::link(u"nowhere"_s, path); }}) {
        block(packages_ + u"/ulm"_s);
        EXPECT_EQ(refusal(), Refusal::OutputFolder) << "there is something already";
        std::filesystem::remove((packages_ + u"/ulm"_s).toStdString());
    }
    EXPECT_EQ(refusal(), Refusal::Log);
}

TEST_F(JobPreparationTest, a_missing_temporary_folder_is_made_where_the_job_may) {
    QDir().rmdir(temporary_);
    values_.folders.temporaryParents = platform::Parents::MustExist;
    EXPECT_EQ(std::get<Refusal>(prepare()), Refusal::TemporaryFolder);
    EXPECT_FALSE(QFileInfo::exists(temporary_));
    values_.folders.temporaryParents = platform::Parents::Create;
    EXPECT_TRUE(std::holds_alternative<JobPlan>(prepare()));
}

TEST_F(JobPreparationTest, where_no_temporary_folder_is_named_it_is_the_systems) {
    qunsetenv("TMPDIR");
    EXPECT_EQ(QFileInfo(plan().temporaryFolder.path()).path(), u"/tmp"_s);
}

TEST_F(JobPreparationTest, packages_lie_in_the_named_data_folder_or_below_home) {
    const struct {
        const char *home, *data; // below the test's folder where they begin with "@"
        const char* found;       // nothing: refused
    } rows[] = {
        {"@home", "@xdg", "@xdg"},
        {"@home", "relative/folder", "@home/.local/share"},
        {"@home", "", "@home/.local/share"},
        {"@home//", "", "@home/.local/share"},
        {nullptr, "", nullptr},
        // A relative one would be another folder to the tool, which runs elsewhere.
        {"", "", nullptr},
        {"home", "", nullptr},
        {"./home", "", nullptr},
        {"../home", "", nullptr},
    };
    const auto path = [this](const char* text) {
        return QString::fromUtf8(text).replace(u'@', root_.path() + u'/');
    };
    for (const auto& [home, data, found] : rows) {
        home == nullptr ? qunsetenv("HOME") : qputenv("HOME", path(home).toUtf8());
        qputenv("XDG_DATA_HOME", path(data).toUtf8());
        if (found == nullptr)
            EXPECT_EQ(refusal(), Refusal::PackageFolder) << (home ? home : "no home");
        else
            EXPECT_EQ(plan().supportFolder, path(found) + u"/Norvaxel/Norvaxel 3D"_s);
    }
}

} // namespace
