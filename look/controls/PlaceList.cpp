#include "look/controls/PlaceList.h"

#include "look/style/Colours.h"
#include "look/style/FocusRing.h"
#include "look/text/Label.h"

#include <QKeyEvent>

namespace look {

PlaceList::PlaceList(QWidget* parent)
    : QListView(parent), emptyLabel_(new Label(13, colours::tertiaryOnWell, parent)) {
    emptyLabel_->setAttribute(Qt::WA_TransparentForMouseEvents);
    emptyLabel_->setAlignment(Qt::AlignCenter);
    emptyLabel_->hide();
    setItemDelegate(&delegate_);
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

PlaceList::~PlaceList() {
    delete emptyLabel_;
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
    switch (event->type()) {
    case QEvent::ParentChange:
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::ZOrderChange:
        placeEmptyLabel();
        break;
    default:
        break;
    }
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
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        // The focus makes the first row the current one without selecting it, and the toolkit would
        // go on from there: nobody could reach it with an arrow.
        if (currentIndex().isValid() && !selectionModel()->hasSelection()) {
            setCurrentIndex(currentIndex());
            return;
        }
        break;
    default:
        break;
    }
    QListView::keyPressEvent(event);
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
