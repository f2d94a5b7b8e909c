#pragma once

#include "search/ResultRow.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

namespace search {

// The most rows that one search shows.
inline constexpr qsizetype mostResults = 8;

// Understands a Photon answer: a GeoJSON feature collection (RFC 7946) whose features are points.
// Returns at most `mostResults` rows in the answer's order; features that are not usable points
// are left out. Nothing is returned when the body is no JSON object with a `features` array.
// `query` is the trimmed search text: the name of a place that has none. Pure; any thread.
std::optional<QList<ResultRow>> readPhotonAnswer(const QByteArray& body, const QString& query);

} // namespace search
