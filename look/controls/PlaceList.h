#pragma once

#include "look/text/Label.h"

#include <QAbstractListModel>
#include <QList>
#include <QListView>
#include <QPointer>
#include <QString>

namespace look {

// What one two-line row shows.
struct PlaceRow {
    QString name;
    QString detail;
};

// The rows of a list of places, name over detail. Qt::DisplayRole is the name line, `detailRole`
// and the tooltip the detail, the accessible text both with a line break between them. Main thread.
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

// A list of two-line rows in a well: one selection, no header, no editing. Over the middle of the
// empty list may lie a text; it is a sibling of the list, because assistive technology sees nothing
// that lies inside a list, and it comes and goes with the list. Main thread.
class PlaceList : public QListView {
    Q_OBJECT
public:
    explicit PlaceList(QWidget* parent = nullptr);
    ~PlaceList() override { delete emptyLabel_; }

    // Shown while the model has no rows; an empty text shows none.
    void setEmptyText(const QString& text);
    Label* emptyLabel() const { return emptyLabel_; }

    void reset() override;

protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void selectionChanged(const QItemSelection& selected,
                          const QItemSelection& deselected) override;

private:
    void placeEmptyLabel();

    QPointer<Label> emptyLabel_; // owned by the list's parent
};

} // namespace look
