#pragma once

#include <QFile>
#include <QString>

#include <string>

namespace jobs {

// A path as the file system has it. Pure; any thread.
inline std::string filePath(const QString& path) {
    return QFile::encodeName(path).toStdString();
}

} // namespace jobs
