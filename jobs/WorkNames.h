#pragma once

#include <QDateTime>
#include <QString>
#include <QUuid>

namespace jobs {

// A file-name-safe form of a name: "a" to "z", "0" to "9" and single inner hyphens, at most 42
// characters, never empty ("ort" when nothing of the name is left). Pure; any thread.
QString NXSlug(const QString& text);

// The name of a place import's output folder: slug, local time and six digits of `uuid`, so that
// it reads well in a file browser, sorts by time and never meets an older one. Pure; any thread.
QString placeFolderName(const QString& place, const QDateTime& now, const QUuid& uuid);

// The same for a route from its first to its last station, with eight digits. The slug's length
// limit holds for the joined pair. Pure; any thread.
QString routeFolderName(const QString& first, const QString& last, const QDateTime& now,
                        const QUuid& uuid);

// The 36 characters of a UUID in upper case. Pure; any thread.
QString upperCaseText(const QUuid& uuid);

} // namespace jobs
