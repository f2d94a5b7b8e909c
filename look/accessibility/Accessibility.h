#pragma once

#include <QAccessible>
#include <QObject>
#include <QString>

#include <deque>
#include <memory>

class QWidget;

namespace look {

// Makes assistive technology see our own widgets as what they are (a group, a dialog, an alert, a
// text that may be busy). Costs nothing until such a technology asks. Called by applyLook. Main
// thread.
void describeOurWidgets();

// While one lives, what the toolkit reports of this kind of this object does not reach assistive
// technology: a reader hears of it in another way, and would say it twice. Main thread.
class Unreported {
public:
    Unreported(const QObject* object, QAccessible::Event kind);
    ~Unreported();
    Unreported(const Unreported&) = delete;
    Unreported& operator=(const Unreported&) = delete;

private:
    static void pass(QAccessibleEvent* event);

    const QObject* object_;
    QAccessible::Event kind_;
    Unreported* outer_;
    QAccessible::UpdateHandler before_;
};

// Polite waits for what is being read out; assertive is what a person must know now, an error.
enum class Urgency { Polite, Assertive };

// Reads texts out to who cannot see them, while the focus stays where it is. Silent while nobody
// listens or the window does not show. Main thread.
class Announcer : public QObject {
    Q_OBJECT

public:
    // Owned by its window.
    explicit Announcer(QWidget* window);

    // At the end of this turn of the event loop: a screen reader breaks off when the focus moves,
    // and what a text tells of often moves it. Of several texts in one turn the last one is read.
    void say(const QString& text, Urgency urgency);

private:
    void sayNow();

    QWidget* window_;
    QString text_;
    Urgency urgency_ = Urgency::Polite;
    bool isWaiting_ = false;                        // sayNow() is under way
    std::deque<std::unique_ptr<QObject>> messages_; // the last ones
};

} // namespace look
