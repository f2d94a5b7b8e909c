#pragma once

#include "look/controls/PlaceRowDelegate.h"
#include "look/text/Label.h"

#include <QListView>
#include <QPointer>

namespace look {

// A list of two-line rows in a well: one selection, no header, no editing. Over the middle of the
// empty list may lie a text; it is a sibling of the list, because assistive technology sees nothing
// that lies inside a list, and it comes and goes with the list. Main thread.
class PlaceList : public QListView {
    Q_OBJECT

public:
    explicit PlaceList(QWidget* parent = nullptr);
    ~PlaceList() override;

    // Shown while the model has no rows; an empty text shows none.
    void setEmptyText(const QString& text);
    Label* emptyLabel() const { return emptyLabel_; }

    void reset() override;

protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void selectionChanged(const QItemSelection& selected,
                          const QItemSelection& deselected) override;

private:
    void placeEmptyLabel();

    PlaceRowDelegate delegate_;
    QPointer<Label> emptyLabel_; // owned by the list's parent
};

} // namespace look
