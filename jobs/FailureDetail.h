#pragma once

#include <QString>

namespace jobs {

// What the importer's log says about a failed place import: the text after the last "FEHLER:"
// (the whole log if there is none), trimmed, its last 650 UTF-16 units without half a character,
// service addresses replaced by "[Datendienst]". Empty when the log cannot be read or is not UTF-8.
// Reads the file once in small pieces: a log of any length costs no memory. Any thread.
QString placeFailureDetail(const QString& logPath);

// The same for a failed route, from the log's last 16 KiB: the first line after the last
// "FEHLER:", else the last line that is not blank; at most 500 units, widened to whole composed
// characters. A log that is not UTF-8 is read as Latin-1. Any thread.
QString routeFailureDetail(const QString& logPath);

} // namespace jobs
