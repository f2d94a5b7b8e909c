#include "platform/FileBrowser.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QStringList>
#include <QUrl>

using namespace Qt::StringLiterals;

#ifndef Q_OS_MACOS
namespace {

// However long a file manager takes, it has been asked: its window still comes. Who has ended
// without an answer, or cannot be started, the bus itself reports.
constexpr int patience = 0x7fffffff; // the bus library's word for no limit

void openFolderOf(const QString& path) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(path).path()));
}

// File managers offer this (freedesktop.org, "File Manager D-Bus Interface").
QDBusMessage showItems(const QString& path) {
    QDBusMessage call = QDBusMessage::createMethodCall(
        u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
        u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    const QString address = QString::fromLatin1(QUrl::fromLocalFile(path).toEncoded());
    call.setArguments({QStringList{address}, QString()});
    return call;
}

} // namespace
#endif

void platform::showInFileBrowser(const QString& path) {
#ifdef Q_OS_MACOS
    QProcess::startDetached(u"/usr/bin/open"_s, {u"-R"_s, path});
#else
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        openFolderOf(path); // a call without a bus is never said to have failed
        return;
    }
    auto* reply = new QDBusPendingCallWatcher(bus.asyncCall(showItems(path), patience));
    QObject::connect(reply, &QDBusPendingCallWatcher::finished, reply, [reply, path] {
        if (reply->isError())
            openFolderOf(path);
        reply->deleteLater();
    });
#endif
}
