#include "look/accessibility/Accessibility.h"

#include "look/accessibility/AccessibleField.h"
#include "look/accessibility/AccessiblePlaceList.h"
#include "look/controls/Field.h"
#include "look/controls/Panel.h"
#include "look/controls/PlaceList.h"
#include "look/controls/PopUp.h"
#include "look/controls/Segments.h"
#include "look/text/Label.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QStackedWidget>

#include <utility>

namespace look {
namespace {

// A label in all that the toolkit says of one; in addition whether it is busy, and the tooltip that
// shows where it is elided.
class AccessibleLabel : public QAccessibleWidget {
public:
    explicit AccessibleLabel(Label* label) : QAccessibleWidget(label, QAccessible::StaticText) {}

    QString text(QAccessible::Text kind) const override {
        QString known = QAccessibleWidget::text(kind);
        if (!known.isEmpty())
            return known;
        if (kind == QAccessible::Name)
            return label()->text();
        return kind == QAccessible::Description ? label()->elidedText() : QString();
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.busy = label()->isBusy();
        return state;
    }

    QList<QPair<QAccessibleInterface*, QAccessible::Relation>>
    relations(QAccessible::Relation wanted) const override {
        auto found = QAccessibleWidget::relations(wanted);
        QWidget* buddy = label()->buddy();
        if (buddy && wanted & QAccessible::Labelled)
            found.append({QAccessible::queryAccessibleInterface(buddy), QAccessible::Labelled});
        return found;
    }

private:
    Label* label() const { return static_cast<Label*>(object()); }
};

// A pop-up: named by its caption, with the list of its menu as its child, whose entries can be
// stepped through; the toolkit's own list can be read and nothing else before it is opened. Its
// entry is its value. Before 6.8 nothing of that arrives at AT-SPI, and it is the description too.
class AccessiblePopUp : public QAccessibleWidget {
public:
    explicit AccessiblePopUp(PopUp* popUp) : QAccessibleWidget(popUp, QAccessible::ComboBox) {}

    QString text(QAccessible::Text kind) const override {
        constexpr bool isOld = QT_VERSION < QT_VERSION_CHECK(6, 8, 0);
        const bool isEntry =
            kind == QAccessible::Value || (isOld && kind == QAccessible::Description);
        return isEntry ? popUp()->currentText() : QAccessibleWidget::text(kind);
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.expandable = true;
        state.expanded = popUp()->view()->isVisible();
        return state;
    }

    int childCount() const override { return 1; }
    QAccessibleInterface* child(int index) const override {
        return index == 0 ? QAccessible::queryAccessibleInterface(popUp()->view()) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        return child && child->object() == popUp()->view() ? 0 : -1;
    }

    QStringList actionNames() const override {
        return {showMenuAction(), pressAction(), increaseAction(), decreaseAction()};
    }

    void doAction(const QString& action) override {
        if (!popUp()->isEnabled())
            return;
        if (action == increaseAction())
            step(1);
        else if (action == decreaseAction())
            step(-1);
        else if (action == showMenuAction() || action == pressAction())
            popUp()->view()->isVisible() ? popUp()->hidePopup() : popUp()->showPopup();
    }

private:
    PopUp* popUp() const { return static_cast<PopUp*>(object()); }

    // To the next or the previous entry; not beyond the ends.
    void step(int entries) const {
        popUp()->setCurrentIndex(
            qBound(0, popUp()->currentIndex() + entries, popUp()->count() - 1));
    }
};

// A part of its window, and all that can be used of it while it is there.
class AccessiblePanel : public QAccessibleWidget {
public:
    explicit AccessiblePanel(Panel* panel)
        : QAccessibleWidget(panel, panel->kind() == PanelKind::Alert ? QAccessible::AlertMessage
                                                                     : QAccessible::Dialog) {}

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.modal = true;
        return state;
    }
};

// A message without a widget: nobody comes upon it who explores the window.
class Message : public QObject {
public:
    Message(QAccessible::Role messageRole, QObject* above) : QObject(above), role(messageRole) {}

    const QAccessible::Role role;
    QString text;
};

class AccessibleMessage : public QAccessibleObject {
public:
    explicit AccessibleMessage(Message* message) : QAccessibleObject(message) {}

    QAccessible::Role role() const override { return message()->role; }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? message()->text : QString();
    }
    QAccessible::State state() const override { return {}; }
    QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(message()->parent());
    }
    QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }

private:
    Message* message() const { return static_cast<Message*>(object()); }
};

QAccessibleInterface* interfaceFor(const QString& /*className*/, QObject* object) {
    if (auto* label = qobject_cast<Label*>(object))
        return new AccessibleLabel(label);
    if (auto* popUp = qobject_cast<PopUp*>(object))
        return new AccessiblePopUp(popUp);
    if (auto* field = qobject_cast<Field*>(object))
        return accessibleOf(field);
    if (auto* list = qobject_cast<PlaceList*>(object))
        return accessibleOf(list);
    // The pages of a window are a "layered pane" to the toolkit, which readers then speak of.
    if (qobject_cast<Segments*>(object) || qobject_cast<QStackedWidget*>(object))
        return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Grouping);
    if (auto* panel = qobject_cast<Panel*>(object))
        return new AccessiblePanel(panel);
    if (auto* message = dynamic_cast<Message*>(object))
        return new AccessibleMessage(message);
    return nullptr;
}

} // namespace

void describeOurWidgets() {
    QAccessible::installFactory(interfaceFor);
}

namespace {

Unreported* innermost = nullptr;

} // namespace

Unreported::Unreported(const QObject* object, QAccessible::Event kind)
    : object_(object), kind_(kind), outer_(std::exchange(innermost, this)),
      before_(QAccessible::installUpdateHandler(&Unreported::pass)) {}

Unreported::~Unreported() {
    QAccessible::installUpdateHandler(before_);
    innermost = outer_;
}

// On to who would have it without this one.
void Unreported::pass(QAccessibleEvent* event) {
    if (event->object() == innermost->object_ && event->type() == innermost->kind_)
        return;
    Unreported* passing = std::exchange(innermost, innermost->outer_);
    QAccessible::installUpdateHandler(passing->before_);
    QAccessible::updateAccessibility(event);
    QAccessible::installUpdateHandler(&Unreported::pass);
    innermost = passing;
}

Announcer::Announcer(QWidget* window) : QObject(window), window_(window) {}

void Announcer::say(const QString& text, Urgency urgency) {
    if (!QAccessible::isActive() || !window_->isVisible())
        return;
    text_ = text;
    urgency_ = urgency;
    if (!std::exchange(isWaiting_, true))
        QMetaObject::invokeMethod(this, &Announcer::sayNow, Qt::QueuedConnection);
}

void Announcer::sayNow() {
    isWaiting_ = false;
    if (text_.isEmpty())
        return;
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    QAccessibleAnnouncementEvent event(window_, text_);
    event.setPoliteness(urgency_ == Urgency::Assertive
                            ? QAccessible::AnnouncementPoliteness::Assertive
                            : QAccessible::AnnouncementPoliteness::Polite);
    QAccessible::updateAccessibility(&event);
#else
    // Before 6.8 the toolkit has no event for this, and drops QAccessible::Alert on its way to
    // AT-SPI. Of what does arrive for something that has no focus, a label's new name among it,
    // Orca reads out one thing: an object of the role "notification" that comes to show. So a new
    // one shows for each text; new, since a known one's name may come out of a cache. An error's
    // lies in an object of the role "alert": its tone is there for who asks, and nothing is read
    // twice.
    auto* above =
        urgency_ == Urgency::Assertive ? new Message(QAccessible::AlertMessage, window_) : nullptr;
    auto* message =
        new Message(QAccessible::Notification, above ? static_cast<QObject*>(above) : window_);
    message->text = text_;
    messages_.emplace_back(above ? above : message);
    // A reader asks for a message's text in its own time; by then the next one may be there.
    constexpr size_t remembered = 8;
    if (messages_.size() > remembered)
        messages_.pop_front();
    QAccessibleEvent event(message, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&event);
#endif
}

} // namespace look
