#pragma once

#include <QString>
#include <QUrl>

namespace search {

// The longest query that is sent, in UTF-16 code units.
inline constexpr qsizetype longestQuery = 300;

// The address of one search: `geocoder` with the items q, limit and lang, in this order. The text
// is percent-encoded completely, so that the server reads it as it was typed ("+" included). The
// answer's language is German whatever the interface speaks: the importer's files are German. Pure;
// any thread.
QUrl photonQuery(const QUrl& geocoder, const QString& text);

} // namespace search
