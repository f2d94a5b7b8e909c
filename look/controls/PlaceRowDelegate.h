#pragma once

#include <QStyledItemDelegate>

namespace look {

// Draws a row of two lines: name over detail. Both are literal, on one line each, elided at the
// tail, in the order of their own first strong letter at the leading edge. A row is 48 high; 2 lie
// between two rows. The roles are those of PlaceListModel. Main thread.
class PlaceRowDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;
};

} // namespace look
