#include "app/PlaceRows.h"

#include "localization/NXLocal.h"

namespace app {

using localization::filled;
using localization::NXLocal;

QList<look::PlaceRow> rowsOf(const QList<search::ResultRow>& results) {
    QList<look::PlaceRow> rows;
    for (const search::ResultRow& row : results)
        rows.append({row.name, row.detail});
    return rows;
}

QList<look::PlaceRow> rowsOf(const QList<jobs::Station>& stations) {
    QList<look::PlaceRow> rows;
    for (const jobs::Station& station : stations)
        rows.append(
            {filled(NXLocal(u"%ld · %@"), {rows.size() + 1, station.name}), station.detail});
    return rows;
}

} // namespace app
