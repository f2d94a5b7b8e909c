// The other half of what is laid over the program: does in its window what a person does there, and
// says what the window shows. Each packet from run.py is one deed, answered with the state after
// it.

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QThread>

#include <sys/socket.h>

#include <thread>

using namespace Qt::StringLiterals;

namespace {

QJsonObject state() {
    QJsonObject buttons;
    QJsonArray panel;
    QString status;
    for (QWidget* each : QApplication::allWidgets()) {
        const QString name = each->objectName();
        if (name == "status"_L1)
            status = each->toolTip();
        else if (qobject_cast<QAbstractButton*>(each) != nullptr && !name.isEmpty())
            buttons[name] = each->isVisible() ? 1 : 0;
        else if (qobject_cast<QDialog*>(each) != nullptr && each->isVisible())
            for (const auto* label : each->findChildren<QLabel*>())
                panel.append(label->text());
    }
    return {{"status"_L1, status}, {"buttons"_L1, buttons}, {"panel"_L1, panel}};
}

// What can be used and has that name, or is a button of that title.
template<typename Widget>
Widget* usable(const QString& name) {
    for (QWidget* each : QApplication::allWidgets()) {
        const auto* button = qobject_cast<QAbstractButton*>(each);
        if (each->isVisible() && each->isEnabled() &&
            (each->objectName() == name || (button != nullptr && button->text() == name)))
            return qobject_cast<Widget*>(each);
    }
    return nullptr;
}

bool obey(const QString& verb, const QString& name, const QString& value) {
    if (auto* button = verb == "press"_L1 ? usable<QAbstractButton>(name) : nullptr)
        button->click();
    else if (auto* field = verb == "type"_L1 ? usable<QLineEdit>(name) : nullptr)
        field->setText(value);
    else if (auto* list = verb == "select"_L1 ? usable<QAbstractItemView>(name) : nullptr)
        list->setCurrentIndex(list->model()->index(value.toInt(), 0));
    else if (auto* box = verb == "choose"_L1 ? usable<QComboBox>(name) : nullptr)
        box->setCurrentIndex(value.toInt());
    else
        return verb == "look"_L1;
    return true;
}

void listen(int socket) {
    char bytes[4096];
    for (ssize_t size = 0; (size = ::recv(socket, bytes, sizeof bytes, 0)) > 0;) {
        QStringList words = QString::fromUtf8(bytes, size).split(u'\t');
        words.resize(3);
        QByteArray answer = "{}"; // while the program starts
        const auto answerNow = [&] {
            if (QThread::currentThread()->loopLevel() == 0)
                return;
            const bool isDone = obey(words[0], words[1], words[2]);
            QJsonObject found = state();
            found["done"_L1] = isDone;
            answer = QJsonDocument(found).toJson();
        };
        QMetaObject::invokeMethod(qApp, answerNow, Qt::BlockingQueuedConnection);
        ::send(socket, answer.constData(), std::size_t(answer.size()), MSG_NOSIGNAL);
    }
}

void followApplication() {
    qAddPreRoutine([] {
        const int socket = qEnvironmentVariableIntValue("NORVAXEL_ONE_FAULT_SOCKET");
        std::thread(listen, socket).detach();
    });
}

Q_CONSTRUCTOR_FUNCTION(followApplication)

} // namespace
