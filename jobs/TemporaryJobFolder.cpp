#include "jobs/TemporaryJobFolder.h"

#include <QDir>

#include <filesystem>
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
    // The toolkit's own removal leaves names that are not UTF-8 and trees deeper than a path may be
    // long; a tool may leave both.
    std::error_code ignored;
    if (!path_.isEmpty())
        std::filesystem::remove_all(filePath(path_), ignored);
}

} // namespace jobs
