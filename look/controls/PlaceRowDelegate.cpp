#include "look/controls/PlaceRowDelegate.h"

#include "look/controls/PlaceListModel.h"
#include "look/style/Colours.h"
#include "look/style/Shapes.h"
#include "look/style/Sizes.h"
#include "look/style/ToolTip.h"
#include "look/text/Direction.h"
#include "look/text/Fonts.h"
#include "look/text/LiteralText.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QPainter>

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
        const bool isFocused =
            option.state & QStyle::State_Active && option.widget && option.widget->hasFocus();
        if (isFocused)
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

} // namespace

void PlaceRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const {
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
             index.data(PlaceListModel::detailRole).toString(), look::fontForNames(11), look.detail,
             option.direction);
    painter->restore();
}

QSize PlaceRowDelegate::sizeHint(const QStyleOptionViewItem& /*option*/,
                                 const QModelIndex& index) const {
    const QAbstractItemModel* model = index.model();
    const bool isLast = model && index.row() + 1 == model->rowCount(index.parent());
    return {0, isLast ? rowHeight : rowHeight + rowGap};
}

bool PlaceRowDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                                 const QStyleOptionViewItem& /*option*/, const QModelIndex& index) {
    if (event->type() != QEvent::ToolTip)
        return false;
    showToolTip(event->globalPos(), index.data(Qt::ToolTipRole).toString(), view->viewport());
    return true;
}

} // namespace look
