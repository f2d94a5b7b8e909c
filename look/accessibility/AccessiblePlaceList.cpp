#include "look/accessibility/AccessiblePlaceList.h"

#include "look/controls/PlaceList.h"

#include <QAccessibleWidget>
#include <QHash>

#include <utility>

namespace look {
namespace {

// Invalid for a row that is not there.
QModelIndex indexOf(const PlaceList* list, int row) {
    return list->model() ? list->model()->index(row, 0) : QModelIndex();
}

bool isSelectedRow(const PlaceList* list, int row) {
    const QModelIndex index = indexOf(list, row);
    return index.isValid() && list->selectionModel()->isSelected(index);
}

// What cannot be used cannot be selected in either.
bool chooseRow(PlaceList* list, int row) {
    const QModelIndex index = indexOf(list, row);
    if (!index.isValid() || !list->isEnabled())
        return false;
    list->setCurrentIndex(index);
    return true;
}

bool dropRow(PlaceList* list, int row) {
    const QModelIndex index = indexOf(list, row);
    if (!index.isValid() || !list->isEnabled())
        return false;
    list->selectionModel()->select(index, QItemSelectionModel::Deselect);
    return true;
}

// One row, for as long as the rows are the same. Its list owns it.
class AccessibleRow : public QAccessibleInterface,
                      public QAccessibleTableCellInterface,
                      public QAccessibleActionInterface {
public:
    AccessibleRow(PlaceList* list, int row) : list_(list), row_(row) {}

    bool isValid() const override { return list_ && index().isValid(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return parent()->window(); }
    QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(list_.data());
    }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? index().data(Qt::AccessibleTextRole).toString()
                                         : QString();
    }
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}

    QRect rect() const override {
        const QRect inList = list_->visualRect(index());
        return {list_->viewport()->mapToGlobal(inList.topLeft()), inList.size()};
    }

    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QAccessible::State state() const override {
        QAccessible::State state;
        state.invisible = !list_->isVisible();
        state.disabled = !list_->isEnabled();
        state.focusable = true;
        state.focused = list_->hasFocus() && list_->currentIndex() == index();
        state.selectable = true;
        state.selected = isSelected();
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::TableCellInterface)
            return static_cast<QAccessibleTableCellInterface*>(this);
        if (type == QAccessible::ActionInterface)
            return static_cast<QAccessibleActionInterface*>(this);
        return nullptr;
    }

    bool isSelected() const override { return isSelectedRow(list_, row_); }
    QList<QAccessibleInterface*> columnHeaderCells() const override { return {}; }
    QList<QAccessibleInterface*> rowHeaderCells() const override { return {}; }
    int columnIndex() const override { return 0; }
    int rowIndex() const override { return row_; }
    int columnExtent() const override { return 1; }
    int rowExtent() const override { return 1; }
    QAccessibleInterface* table() const override { return parent(); }

    QStringList actionNames() const override { return {toggleAction()}; }
    void doAction(const QString& action) override {
        if (action == toggleAction())
            isSelected() ? dropRow(list_, row_) : chooseRow(list_, row_);
    }
    QStringList keyBindingsForAction(const QString& /*action*/) const override { return {}; }

private:
    QModelIndex index() const { return indexOf(list_, row_); }

    QPointer<PlaceList> list_;
    int row_;
};

class AccessiblePlaceList : public QAccessibleWidget,
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
                            public QAccessibleSelectionInterface,
#endif
                            public QAccessibleTableInterface {
public:
    explicit AccessiblePlaceList(PlaceList* list) : QAccessibleWidget(list, QAccessible::List) {}
    ~AccessiblePlaceList() override { forgetRows(); }

    int childCount() const override { return rowCount(); }
    QAccessibleInterface* child(int row) const override {
        if (row < 0 || row >= rowCount())
            return nullptr;
        if (const auto known = rows_.constFind(row); known != rows_.constEnd())
            return QAccessible::accessibleInterface(*known);
        auto* made = new AccessibleRow(list(), row);
        rows_.insert(row, QAccessible::registerAccessibleInterface(made));
        return made;
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        auto* cell =
            child ? const_cast<QAccessibleInterface*>(child)->tableCellInterface() : nullptr;
        return cell && cell->table() == this ? cell->rowIndex() : -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        return child(list()->indexAt(list()->viewport()->mapFromGlobal(QPoint(x, y))).row());
    }
    QAccessibleInterface* focusChild() const override {
        return list()->hasFocus() ? child(list()->currentIndex().row()) : nullptr;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        if (type == QAccessible::TableInterface)
            return static_cast<QAccessibleTableInterface*>(this);
#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
        if (type == QAccessible::SelectionInterface)
            return static_cast<QAccessibleSelectionInterface*>(this);
#endif
        return QAccessibleWidget::interface_cast(type);
    }

    QAccessibleInterface* caption() const override { return nullptr; }
    QAccessibleInterface* summary() const override { return nullptr; }
    QAccessibleInterface* cellAt(int row, int column) const override {
        return column == 0 ? child(row) : nullptr;
    }
    QString columnDescription(int /*column*/) const override { return {}; }
    QString rowDescription(int /*row*/) const override { return {}; }
    int columnCount() const override { return 1; }
    int rowCount() const override { return list()->model() ? list()->model()->rowCount() : 0; }

    int selectedCellCount() const override { return selectedRowCount(); }
    QList<QAccessibleInterface*> selectedCells() const override {
        QList<QAccessibleInterface*> cells;
        for (const int row : selectedRows())
            cells.append(child(row));
        return cells;
    }
    int selectedRowCount() const override { return int(selectedRows().size()); }
    QList<int> selectedRows() const override {
        QList<int> rows;
        for (int row = 0; row < rowCount(); ++row)
            if (isRowSelected(row))
                rows.append(row);
        return rows;
    }
    bool isRowSelected(int row) const override { return isSelectedRow(list(), row); }
    bool selectRow(int row) override { return chooseRow(list(), row); }
    bool unselectRow(int row) override { return dropRow(list(), row); }
    // The one column is no unit of its own.
    int selectedColumnCount() const override { return 0; }
    QList<int> selectedColumns() const override { return {}; }
    bool isColumnSelected(int /*column*/) const override { return false; }
    bool selectColumn(int /*column*/) override { return false; }
    bool unselectColumn(int /*column*/) override { return false; }

    void modelChange(QAccessibleTableModelChangeEvent* /*event*/) override { forgetRows(); }

#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0)
    int selectedItemCount() const override { return selectedRowCount(); }
    QList<QAccessibleInterface*> selectedItems() const override { return selectedCells(); }
    bool select(QAccessibleInterface* row) override { return selectRow(indexOfChild(row)); }
    bool unselect(QAccessibleInterface* row) override { return unselectRow(indexOfChild(row)); }
    bool selectAll() override { return false; } // one at most
    bool clear() override {
        list()->clearSelection();
        return true;
    }
#endif

private:
    PlaceList* list() const { return static_cast<PlaceList*>(object()); }

    // A reader keeps what it has read of a row: other rows are other objects.
    void forgetRows() const {
        for (const QAccessible::Id row : std::exchange(rows_, {}))
            QAccessible::deleteAccessibleInterface(row);
    }

    mutable QHash<int, QAccessible::Id> rows_; // those that were asked for
};

} // namespace

QAccessibleInterface* accessibleOf(PlaceList* list) {
    return new AccessiblePlaceList(list);
}

} // namespace look
