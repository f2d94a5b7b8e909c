#include "jobs/TemporaryJobFolder.h"

#include "jobs/FilePath.h"

#include <QDir>

#include <utility>

namespace jobs {
namespace {

// The toolkit's own answer passes over a folder that is named but missing.
QString systemTemporaryFolder() {
    const QString named = qEnvironmentVariable("TMPDIR");
    return named.isEmpty() ? QDir::tempPath() : named;
}

} // namespace

std::optional<TemporaryJobFolder> TemporaryJobFolder::make(const QString& name,
                                                           platform::Parents parents) {
    const QString path = QDir(systemTemporaryFolder()).absoluteFilePath(name);
    if (platform::createPrivateFolder(filePath(path), parents))
        return std::nullopt;
    return TemporaryJobFolder(path);
}

TemporaryJobFolder::TemporaryJobFolder(TemporaryJobFolder&& other) noexcept
    : path_(std::exchange(other.path_, {})) {}

TemporaryJobFolder::~TemporaryJobFolder() {
    if (!path_.isEmpty())
        QDir(path_).removeRecursively();
}

} // namespace jobs
