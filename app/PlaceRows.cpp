#include "app/PlaceRows.h"

#include "localization/NXLocal.h"
#include "look/text/Direction.h"

namespace app {

using localization::filled;
using localization::NXLocal;

QList<look::PlaceRow> rowsOf(const QList<search::ResultRow>& results,
                             Qt::LayoutDirection direction) {
    QList<look::PlaceRow> rows;
    for (const search::ResultRow& row : results)
        rows.append({row.name, shownDetail(row.detail, direction)});
    return rows;
}

QList<look::PlaceRow> rowsOf(const QList<jobs::Station>& stations, Qt::LayoutDirection direction) {
    QList<look::PlaceRow> rows;
    for (const jobs::Station& station : stations)
        rows.append({filled(NXLocal(u"%ld · %@"), {rows.size() + 1, station.name}),
                     shownDetail(station.detail, direction)});
    return rows;
}

QString shownDetail(const QString& detail, Qt::LayoutDirection direction) {
    const bool isPlain =
        look::ownDirection(detail, direction) == Qt::LeftToRight && !look::holdsRightToLeft(detail);
    if (isPlain)
        return detail;
    // Neither separator changes with the language.
    const QString dot = NXLocal(u" · ");
    const QString comma = NXLocal(u", ");
    const qsizetype found = detail.lastIndexOf(dot);
    QStringList address = found < 0 ? QStringList() : detail.first(found).split(comma);
    for (QString& part : address)
        part = look::isolated(part);
    const QString coordinates = found < 0 ? detail : detail.sliced(found + dot.size());
    return address.join(comma) + (found < 0 ? QString() : dot) +
           look::isolatedLeftToRight(coordinates);
}

} // namespace app
