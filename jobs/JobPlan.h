#pragma once

#include "jobs/TemporaryJobFolder.h"
#include "platform/Descriptors.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <variant>

namespace jobs {

// What a job makes: the package of a place or that of a route.
enum class JobKind { Place, Route };

// Why a job was refused before anything was started. Each kind of job has its own sentence.
enum class Refusal {
    ChoiceMissing,   // no search that belongs to the selection; not two to 32 stations
    ServiceAddress,  // the service's address is not one that may be used
    ToolMissing,     // no executable importer beside the program
    PackageFolder,   // the folder for finished packages cannot be made
    TemporaryFolder, // the private job folder cannot be made
    StationName,     // a station's name is empty or too long
    HandOver,        // the hand-over files cannot be written
    OutputFolder,    // the new package's folder cannot be prepared
    Log,             // the log cannot be opened
};

// A file that the program writes for the tool or beside the finished package.
struct JobFile {
    QString name;
    QByteArray bytes;
};

// One run of the importer tool, ready to start: values, and what was prepared on disk, which goes
// with the plan. Belongs to one thread at a time.
struct JobPlan {
    JobKind kind;
    QString tool;                       // absolute path of the importer
    QStringList arguments;              // without the program name
    TemporaryJobFolder temporaryFolder; // working directory: hand-over files and log
    QString logPath;                    // inside `temporaryFolder`
    platform::UniqueFd log;             // open for writing: output and errors of the tool
    QString supportFolder;              // where pointer file and last log go
    QString outputFolder;               // where the tool puts the package; made by the tool
    QStringList requiredFiles;          // in `outputFolder`; the first is the package's main file
    QString pointerName;                // in `supportFolder`; leads to the main file
    QList<JobFile> packageFiles;        // laid beside the package on success
    QString (*failureDetail)(const QString& log); // what a log says about a failure
};

// A plan, or why there is none (then nothing is left on disk but the folder for packages).
using Preparation = std::variant<JobPlan, Refusal>;

} // namespace jobs
