#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>

#include <filesystem>

// The importer tool that lies beside this program, where the program under test looks for it.
// Removed at the end. Its start is recorded by the stand-in alone.
class ImporterTool {
public:
    // There is no tool at first; `folder` is for its record.
    explicit ImporterTool(const std::filesystem::path& folder);
    ImporterTool(const ImporterTool&) = delete;
    ImporterTool& operator=(const ImporterTool&) = delete;
    ~ImporterTool();

    static std::filesystem::path path();

    // The sandbox's stand-in, downloading for so long; `mode` is one of those that it lists.
    void useStandIn(const char* seconds = "0", const char* mode = "");
    // A shell script of its own. It begins with the variable "output", the package's folder.
    void useScript(const QByteArray& lines);
    // Any executable file.
    void useFile(const QByteArray& content);
    void remove();

    // The stand-in's records of one event ("started", "finished", ...).
    QList<QJsonObject> records(const char* event) const;

private:
    std::filesystem::path record_;
};
