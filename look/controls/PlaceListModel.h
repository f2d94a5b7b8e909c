#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QString>

namespace look {

// What one two-line row shows.
struct PlaceRow {
    QString name;
    QString detail;
};

// The rows of a list of places, name over detail. Qt::DisplayRole is the name line, `detailRole`
// and the tooltip the detail, the accessible text both with a line break between them.
// Main thread.
class PlaceListModel : public QAbstractListModel {
    Q_OBJECT
public:
    static constexpr int detailRole = Qt::UserRole + 1;

    using QAbstractListModel::QAbstractListModel;

    // Replaces all rows; whatever was selected is no longer.
    void setRows(QList<PlaceRow> rows);

    int rowCount(const QModelIndex& parent = {}) const override;
    // Nothing for a row that is no longer there.
    QVariant data(const QModelIndex& index, int role) const override;

private:
    QList<PlaceRow> rows_;
};

} // namespace look
