#include "look/controls/PlaceListModel.h"

namespace look {

void PlaceListModel::setRows(QList<PlaceRow> rows) {
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
}

int PlaceListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(rows_.size());
}

QVariant PlaceListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rows_.size())
        return {};
    const PlaceRow& row = rows_.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return row.name;
    case detailRole:
    case Qt::ToolTipRole:
        return row.detail;
    case Qt::AccessibleTextRole:
        // A text on the bus of assistive technology would end at a NUL.
        return QString(row.name + u'\n' + row.detail).replace(QChar::Null, u' ');
    default:
        return {};
    }
}

} // namespace look
