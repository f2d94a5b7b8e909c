#include "ImporterTool.h"

#include "TemporaryFolder.h"

#include <QCoreApplication>
#include <QJsonDocument>

using namespace Qt::StringLiterals;

ImporterTool::ImporterTool(const std::filesystem::path& folder)
    : record_(folder / "importer.jsonl") {
    remove();
    qputenv("NORVAXEL_SANDBOX_RECORD", record_.c_str());
}

ImporterTool::~ImporterTool() {
    remove();
}

std::filesystem::path ImporterTool::path() {
    return std::filesystem::path(QCoreApplication::applicationDirPath().toStdString()) /
           "Norvaxel-Ortsimport";
}

void ImporterTool::useStandIn(const char* seconds, const char* mode) {
    qputenv("NORVAXEL_SANDBOX_SECONDS", seconds);
    qputenv("NORVAXEL_SANDBOX_IMPORT", mode);
    std::filesystem::copy_file(SANDBOX "/Norvaxel-Ortsimport", path(),
                               std::filesystem::copy_options::overwrite_existing);
}

void ImporterTool::useScript(const QByteArray& lines) {
    // The output folder is the eleventh argument.
    useFile("#!/bin/sh\noutput=${11}\n" + lines + '\n');
}

void ImporterTool::useFile(const QByteArray& content) {
    write(path(), content.toStdString());
    std::filesystem::permissions(path(), std::filesystem::perms::owner_all);
}

void ImporterTool::remove() {
    std::filesystem::remove_all(path());
}

QList<QJsonObject> ImporterTool::records(const char* event) const {
    QList<QJsonObject> found;
    for (const QByteArray& line : QByteArray::fromStdString(contentOf(record_)).split('\n')) {
        const QJsonObject record = QJsonDocument::fromJson(line).object();
        if (record.value("event"_L1) == QLatin1StringView(event))
            found += record;
    }
    return found;
}
