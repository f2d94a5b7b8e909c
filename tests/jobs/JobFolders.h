#pragma once

#include "jobs/JobPlan.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace jobs;

inline QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(unreadable)");
}

inline mode_t modeOf(const QString& path) {
    struct stat status{};
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 0777 : 0;
}

inline void makeFile(const QString& path, QFile::Permissions permissions = QFile::ReadOwner) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.setPermissions(permissions);
}

// A home, a temporary folder and a folder with an importer, all of the test's own.
class JobFolders : public testing::Test {
public:
    // Asked once, before the first test points the program elsewhere.
    static QString systemFolder() {
        static const QString folder = QDir::tempPath();
        return folder;
    }

protected:
    JobFolders() {
        EXPECT_TRUE(root_.isValid());
        qputenv("HOME", QFile::encodeName(root_.filePath(u"home"_s)));
        qputenv("TMPDIR", QFile::encodeName(temporary_));
        qunsetenv("XDG_DATA_HOME");
        QDir().mkpath(temporary_);
        QDir().mkpath(tools_);
        makeFile(tool_, QFile::ReadOwner | QFile::ExeOwner);
    }

    // The refusal, after which nothing must be left in the temporary folder.
    Refusal refusalIn(const Preparation& preparation) {
        EXPECT_TRUE(
            QDir(temporary_).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
        return std::get<Refusal>(preparation);
    }

    QTemporaryDir root_{systemFolder() + u"/jobs-XXXXXX"_s};
    const QString temporary_ = root_.filePath(u"tmp"_s);
    const QString tools_ = root_.filePath(u"tools with space"_s);
    const QString tool_ = tools_ + u"/Norvaxel-Ortsimport"_s;
    const QString support_ = root_.filePath(u"home/.local/share/Norvaxel/Norvaxel 3D"_s);
};
