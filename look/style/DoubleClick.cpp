#include "look/style/DoubleClick.h"

#include <QApplication>
#include <QEvent>
#include <QPointer>

namespace look {

namespace {

class DoubleClicks : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        // A press that a widget leaves to its parent is spontaneous only the first time.
        if (!watched->isWidgetType() || !event->spontaneous())
            return false;
        if (event->type() == QEvent::MouseButtonPress)
            first_ = watched;
        return event->type() == QEvent::MouseButtonDblClick && watched != first_;
    }

private:
    QPointer<QObject> first_;
};

} // namespace

void keepDoubleClicksTogether(QApplication& application) {
    application.installEventFilter(new DoubleClicks(&application));
}

} // namespace look
