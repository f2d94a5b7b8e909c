#include "jobs/JobPreparation.h"

#include "jobs/WorkNames.h"
#include "localization/NXLocal.h"
#include "platform/Files.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace jobs {

using localization::NXLocal;

namespace {

// The desktop's folder for data of the user's programs; empty if nothing names one.
QString userDataFolder() {
#ifdef Q_OS_MACOS
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
#else
    const QString named = qEnvironmentVariable("XDG_DATA_HOME");
    if (QDir::isAbsolutePath(named))
        return QDir::cleanPath(named);
    // Not QDir::homePath: without HOME there is no home, rather than the root folder. A relative
    // one would be another folder to the tool, which runs elsewhere.
    const QString home = qEnvironmentVariable("HOME");
    return QDir::isAbsolutePath(home) ? QDir::cleanPath(home + "/.local/share"_L1) : QString();
#endif
}

bool write(const TemporaryJobFolder& folder, const JobFile& file) {
    // The folder does not outlive the job, so nothing is gained by waiting for the disk.
    return !platform::replaceFile(filePath(folder.file(file.name)), file.bytes,
                                  platform::Durability::Fast, platform::Readers::Owner);
}

} // namespace

std::optional<QString> NXSupportFolder() {
    const QString data = userDataFolder();
    if (data.isEmpty() || !QDir().mkpath(data))
        return std::nullopt;
    return data + "/Norvaxel/"_L1 + NXLocal(u"Norvaxel 3D"_s);
}

QString toolFolder() {
#ifdef Q_OS_MACOS
    // Beside the bundle, which holds the program in Contents/MacOS.
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + u"/../../.."_s);
#else
    return QCoreApplication::applicationDirPath();
#endif
}

std::optional<QString> importerTool(const QString& folder) {
    const QString path = folder + "/Norvaxel-Ortsimport"_L1;
    const QFileInfo tool(path);
    return tool.isFile() && tool.isExecutable() ? std::optional(path) : std::nullopt;
}

Preparation prepareJob(const JobValues& values, const JobInputs& inputs,
                       const QString& toolFolder) {
    const auto tool = importerTool(toolFolder);
    if (!tool)
        return Refusal::ToolMissing;
    const auto support = NXSupportFolder();
    const QString packages = support.value_or(QString()) + u'/' + values.folders.packages;
    if (!support || !QDir().mkpath(packages))
        return Refusal::PackageFolder;
    auto temporary = TemporaryJobFolder::make(values.folders.temporaryPrefix +
                                                  upperCaseText(QUuid::createUuid()),
                                              values.folders.temporaryParents);
    if (!temporary)
        return Refusal::TemporaryFolder;
    const auto handOver = inputs.handOver();
    if (const auto* refusal = std::get_if<Refusal>(&handOver))
        return *refusal;
    const auto& files = std::get<QList<JobFile>>(handOver);
    if (!std::ranges::all_of(files, [&](const JobFile& file) { return write(*temporary, file); }))
        return Refusal::HandOver;
    const QString output = packages + u'/' + inputs.packageName;
    if (QFileInfo::exists(output) || QFileInfo(output).isSymLink())
        return Refusal::OutputFolder;
    const QString logPath = temporary->file(values.log.name);
    auto log = platform::createPrivateLog(filePath(logPath));
    if (log.failure)
        return log.failure == std::errc::too_many_files_open ? Refusal::Log : values.log.notMade;
    QStringList arguments = inputs.arguments(temporary->file(files.first().name), output);
    return JobPlan{
        .kind = values.kind,
        .tool = *tool,
        .arguments = std::move(arguments),
        .temporaryFolder = std::move(*temporary),
        .logPath = logPath,
        .log = std::move(log.file),
        .supportFolder = *support,
        .outputFolder = output,
        .requiredFiles = values.package.requiredFiles,
        .pointerName = values.package.pointerName,
        .packageFiles = inputs.packageFiles,
        .failureDetail = values.log.failureDetail,
    };
}

} // namespace jobs
