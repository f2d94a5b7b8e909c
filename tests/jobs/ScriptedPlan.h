#pragma once

#include "JobFolders.h"
#include "jobs/JobPlan.h"

// Plans whose tool is the test's own, in folders of the test's own.
class ScriptedPlan {
protected:
    ScriptedPlan() {
        qputenv("TMPDIR", QFile::encodeName(root_.path()));
        QDir().mkpath(support_);
    }

    // For tools that leave no package: it is there already.
    void makePackageBefore() {
        QDir().mkpath(output_);
        makeFile(output_ + u"/origin.nxd"_s);
        makeFile(output_ + u"/norvaxel3d.json"_s);
    }

    // `tool` is an absolute path, `name` that of the temporary folder.
    JobPlan planFor(const QString& tool, const QStringList& arguments,
                    const QString& name = u"job"_s) {
        auto folder = TemporaryJobFolder::make(name, platform::Parents::MustExist);
        EXPECT_TRUE(folder);
        const QString logPath = folder->file(u"import.log"_s);
        auto log = platform::createPrivateLog(logPath.toStdString());
        EXPECT_FALSE(log.failure);
        return {
            .kind = JobKind::Place,
            .tool = tool,
            .arguments = arguments,
            .temporaryFolder = std::move(*folder),
            .logPath = logPath,
            .log = std::move(log.file),
            .supportFolder = support_,
            .outputFolder = output_,
            .requiredFiles = {u"origin.nxd"_s, u"norvaxel3d.json"_s},
            .pointerName = u"last-import.txt"_s,
            .packageFiles = {{u"extra.json"_s, "extra"}},
            .failureDetail = [](const QString& path) { return QString::fromUtf8(contents(path)); }};
    }

    // The tool is a shell script, which gets the package's folder.
    JobPlan plan(const QByteArray& script) {
        const QString tool = root_.filePath(u"tool"_s);
        QFile file(tool);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + script);
        file.close();
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return planFor(tool, {output_, u"two words"_s});
    }

    QTemporaryDir root_{JobFolders::systemFolder() + u"/jobs-XXXXXX"_s};
    const QString temporary_ = root_.filePath(u"job"_s);
    const QString support_ = root_.filePath(u"support"_s);
    const QString output_ = root_.filePath(u"päckchen 東京"_s);
    const QString pointer_ = support_ + u"/last-import.txt"_s;
    const QString keptLog_ = support_ + u"/letzter-import.log"_s;
};

// A script that makes a whole package.
inline const QByteArray makePackage = R"(mkdir "$1" && touch "$1/origin.nxd" "$1/norvaxel3d.json")";
