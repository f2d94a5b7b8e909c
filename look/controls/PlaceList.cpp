#include "look/controls/PlaceList.h"

#include "look/style/Colours.h"
#include "look/style/FocusRing.h"
#include "look/style/Shapes.h"
#include "look/style/Sizes.h"
#include "look/style/ToolTip.h"
#include "look/text/Direction.h"
#include "look/text/Fonts.h"

#include <QAccessible>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QTimer>

#include <algorithm>
#include <array>

namespace look {
namespace {

constexpr int rowHeight = 48;
constexpr int rowGap = 2;
constexpr int textInset = 10;

struct RowColours {
    bool isFilled = false;
    QRgb fill = colours::well;
    QRgb name = colours::labelOnWell;
    QRgb detail = colours::secondaryOnWell;
};

RowColours coloursFor(const QStyleOptionViewItem& option) {
    const bool isSelected = option.state & QStyle::State_Selected;
    if (!(option.state & QStyle::State_Enabled)) {
        return {isSelected, colours::selectionDisabled, colours::disabledText,
                colours::disabledText};
    }
    if (isSelected) {
        if (option.widget && option.widget->hasFocus())
            return {true, colours::selection, colours::white, colours::selectionDetail};
        return {true, colours::selectionUnfocused, colours::label,
                colours::selectionUnfocusedDetail};
    }
    if (option.state & QStyle::State_MouseOver)
        return {true, colours::rowHover, colours::labelOnWell, colours::secondaryOnWell};
    return {};
}

void drawText(QPainter& painter, const QRect& box, const QString& text, const QFont& font,
              QRgb colour, Qt::LayoutDirection direction) {
    const Line shown = fitLine(text, font, box.width());
    drawLine(painter, box, shown, font, colour,
             direction == Qt::RightToLeft ? Qt::AlignRight : Qt::AlignLeft,
             ownDirection(shown.text, direction));
}

// Draws a row of two lines: name over detail. Both are literal, on one line each, elided at the
// tail, in the order of their own first strong letter at the leading edge. A row is 48 high; 2 lie
// between two rows.
class PlaceRowDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const QRect row(option.rect.left(), option.rect.top(), option.rect.width(), rowHeight);
        const RowColours look = coloursFor(option);
        painter->save();
        if (look.isFilled)
            fillRounded(*painter, row.adjusted(3, 2, -3, -2), sizes::rowRadius, look.fill);
        const QRect text = row.adjusted(textInset, 0, -textInset, 0);
        drawText(*painter, QRect(text.left(), row.top() + 7, text.width(), 17),
                 index.data(Qt::DisplayRole).toString(), look::fontForNames(14, QFont::Medium),
                 look.name, option.direction);
        drawText(*painter, QRect(text.left(), row.top() + 27, text.width(), 14),
                 index.data(PlaceListModel::detailRole).toString(), look::fontForNames(11),
                 look.detail, option.direction);
        painter->restore();
    }

    QSize sizeHint(const QStyleOptionViewItem& /*option*/,
                   const QModelIndex& index) const override {
        const QAbstractItemModel* model = index.model();
        const bool isLast = model && index.row() + 1 == model->rowCount(index.parent());
        return {0, isLast ? rowHeight : rowHeight + rowGap};
    }

    bool helpEvent(QHelpEvent* event, QAbstractItemView* view,
                   const QStyleOptionViewItem& /*option*/, const QModelIndex& index) override {
        if (event->type() != QEvent::ToolTip)
            return false;
        showToolTip(event->globalPos(), index.data(Qt::ToolTipRole).toString(), view->viewport());
        return true;
    }
};

} // namespace

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

PlaceList::PlaceList(QWidget* parent)
    : QListView(parent), emptyLabel_(new Label(13, colours::tertiaryOnWell, parent)) {
    emptyLabel_->setAttribute(Qt::WA_TransparentForMouseEvents);
    emptyLabel_->setAlignment(Qt::AlignCenter);
    emptyLabel_->hide();
    setItemDelegate(new PlaceRowDelegate(this));
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setTabKeyNavigation(false);
    setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_Hover);
    // The frame fills the well: the viewport's square corners would cover its round ones.
    viewport()->setAutoFillBackground(false);
}

void PlaceList::setEmptyText(const QString& text) {
    emptyLabel_->setText(text);
    placeEmptyLabel();
}

void PlaceList::reset() {
    QListView::reset();
    placeEmptyLabel();
    refreshFocusRing(); // the selection is gone without a word
}

bool PlaceList::event(QEvent* event) {
    const bool isHandled = QListView::event(event);
    using enum QEvent::Type;
    static constexpr std::array moving{ParentChange, Move, Resize, Show, Hide, ZOrderChange};
    if (std::ranges::count(moving, event->type()) > 0)
        placeEmptyLabel();
    return isHandled;
}

bool PlaceList::viewportEvent(QEvent* event) {
    const bool isActivation =
        event->type() == QEvent::WindowActivate || event->type() == QEvent::WindowDeactivate;
    // Without rows nothing tells an active window's list from another's, and the toolkit would draw
    // it a second time at every start.
    const bool isEmpty = !model() || model()->rowCount() == 0;
    return isActivation && isEmpty ? false : QListView::viewportEvent(event);
}

void PlaceList::keyPressEvent(QKeyEvent* event) {
    using enum Qt::Key;
    // The focus makes the first row the current one without selecting it, and the toolkit would go
    // on from there: nobody could reach it with an arrow.
    if (currentIndex().isValid() && !selectionModel()->hasSelection() &&
        QList<int>{Key_Up, Key_Down, Key_Home, Key_PageUp, Key_PageDown}.contains(event->key()))
        setCurrentIndex(currentIndex());
    else
        QListView::keyPressEvent(event);
}

// The toolkit tells a screen reader of the list alone, and that after this: so the selected row is
// told of in the next turn.
void PlaceList::focusInEvent(QFocusEvent* event) {
    QListView::focusInEvent(event);
    QTimer::singleShot(0, this, [this] {
        QAccessibleEvent row(this, QAccessible::Focus);
        row.setChild(currentIndex().row());
        if (hasFocus() && selectionModel()->hasSelection())
            QAccessible::updateAccessibility(&row);
    });
}

void PlaceList::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    QListView::selectionChanged(selected, deselected);
    // The ring of a list says "nothing is selected yet".
    refreshFocusRing();
}

void PlaceList::placeEmptyLabel() {
    if (!emptyLabel_ || !parentWidget())
        return;
    if (emptyLabel_->parentWidget() != parentWidget())
        emptyLabel_->setParent(parentWidget());
    const int room = qMax(0, width() - 24);
    const QSize size(qMin(emptyLabel_->sizeHint().width(), room), emptyLabel_->sizeHint().height());
    const QPoint middle = geometry().center() - QRect(QPoint(), size).center();
    emptyLabel_->setGeometry(QRect(middle, size));
    const bool isEmpty = !model() || model()->rowCount() == 0;
    emptyLabel_->setVisible(isEmpty && !isHidden() && !emptyLabel_->text().isEmpty());
    emptyLabel_->raise();
}

} // namespace look
