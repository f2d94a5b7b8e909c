#pragma once

#include "platform/Files.h"

#include <QFile>
#include <QString>

#include <optional>
#include <string>

namespace jobs {

// A path as the file system has it. Pure; any thread.
inline std::string filePath(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

// A private temporary folder for one job, removed with all that is in it when this goes. Any
// thread.
class TemporaryJobFolder {
public:
    // Makes a folder of that name below the system's temporary folder ($TMPDIR), mode 0700.
    // `parents`: whether missing folders above it are made as well. Nothing when it cannot be made.
    static std::optional<TemporaryJobFolder> make(const QString& name, platform::Parents parents);

    TemporaryJobFolder(TemporaryJobFolder&& other) noexcept;
    ~TemporaryJobFolder();

    const QString& path() const { return path_; }
    QString file(const QString& name) const { return path_ + u'/' + name; }

private:
    explicit TemporaryJobFolder(QString path) : path_(std::move(path)) {}

    QString path_; // empty once moved from
};

} // namespace jobs
