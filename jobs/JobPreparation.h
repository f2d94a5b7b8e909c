#pragma once

#include "jobs/JobPlan.h"
#include "platform/PrivateFiles.h"

#include <QString>

#include <functional>
#include <optional>
#include <variant>

namespace jobs {

// The per-user folder that the plug-in reads: the desktop's data folder, "Norvaxel",
// "Norvaxel 3D". The data folder is made if it is missing, the other two are not.
// $XDG_DATA_HOME when it is an absolute path, else $HOME/.local/share, as freedesktop.org's XDG
// Base Directory has it; on macOS the user's Application Support folder. Nothing if there is none.
std::optional<QString> NXSupportFolder();

// The importer tool in `folder`; nothing unless it is an executable file.
std::optional<QString> importerTool(const QString& folder);

// A private temporary folder for one job, removed with its contents unless it was handed on.
class TemporaryJobFolder {
public:
    // Makes a folder of that name below the system's temporary folder ($TMPDIR), mode 0700.
    // `parents`: whether missing folders above it are made as well.
    static std::optional<TemporaryJobFolder> make(const QString& name, platform::Parents parents);

    TemporaryJobFolder(TemporaryJobFolder&& other) noexcept;
    TemporaryJobFolder& operator=(TemporaryJobFolder&&) = delete;
    ~TemporaryJobFolder();

    QString file(const QString& name) const { return path_ + u'/' + name; }
    // Hands the folder on: whoever takes the path removes it.
    QString release();

private:
    explicit TemporaryJobFolder(QString path) : path_(std::move(path)) {}

    QString path_; // empty once handed on
};

// What distinguishes one kind of job from another.
struct JobValues {
    struct {
        QString packages;        // below the support folder; holds one folder a package
        QString temporaryPrefix; // of the temporary folder's name; a UUID follows
        platform::Parents temporaryParents;
    } folders;
    struct {
        QString name;    // in the temporary folder
        Refusal notMade; // Refusal::Log is for a log that is there and cannot be opened
        QString (*failureDetail)(const QString& log);
    } log;
    struct {
        QStringList requiredFiles;
        QString pointerName;
    } package;
};

// What one job adds to that.
struct JobInputs {
    QString packageName; // the new package's folder
    // The files that the tool reads, or why there are none. Asked for when their folder is there.
    std::function<std::variant<QList<JobFile>, Refusal>()> handOver;
    // `handOver`: path of the first of these files; `output`: of the new package's folder.
    std::function<QStringList(const QString& handOver, const QString& output)> arguments;
    QList<JobFile> packageFiles;
};

// Makes everything that the tool needs, in this order: the folder for packages, the private
// temporary folder, the files in it, the log. `toolFolder` is where the importer lies. Main thread.
Preparation prepareJob(const JobValues& values, const JobInputs& inputs, const QString& toolFolder);

} // namespace jobs
