#pragma once

#include "jobs/JobPlan.h"
#include "platform/Files.h"

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

// Where the importer tool lies: beside the program, as the plug-in's package has them. Any thread.
QString toolFolder();

// The importer tool in `folder`; nothing unless it is an executable file.
std::optional<QString> importerTool(const QString& folder);

// What distinguishes one kind of job from another.
struct JobValues {
    JobKind kind;
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
