// The main of every window test: surroundings of its own, then the application, then the tests.

#include "Messages.h"
#include "ProgramLanguage.h"
#include "TemporaryFolder.h"
#include "app/Composition.h"
#include "localization/Language.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <mutex>

using namespace Qt::StringLiterals;

namespace {

std::mutex messagesMutex; // any thread may warn
QStringList messages;

void keepMessage(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    // The screen that nobody sees says of itself what it cannot do.
    if (text.startsWith("This plugin does not support "_L1))
        return;
    const std::lock_guard lock(messagesMutex);
    messages += qFormatLogMessage(type, context, text);
    fprintf(stderr, "%s\n", qUtf8Printable(messages.last()));
}

void settleSurroundings(const TemporaryFolder& home) {
    for (const char* name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "XDG_DATA_HOME", "HTTPS_PROXY",
                             "https_proxy", "ALL_PROXY", "all_proxy", "NO_PROXY", "no_proxy",
                             "QT_STYLE_OVERRIDE", "QT_SCALE_FACTOR", "DBUS_SESSION_BUS_ADDRESS"})
        qunsetenv(name);
    // The scale is part of what a test is about, or it is 1.
    if (qEnvironmentVariableIsSet("FIT_SCALE"))
        qputenv("QT_SCALE_FACTOR", qgetenv("FIT_SCALE"));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("LANG", "C.UTF-8");
    qputenv("TZ", "ABC-05:45"); // neither universal time nor that of the machine
    qputenv("LANGUAGE", programLanguage.system);
    qputenv("HOME", home.path().c_str());
    qputenv("XDG_RUNTIME_DIR", home.path().c_str());
    if (*programLanguage.stored)
        nxui::saveLanguage(nxui::Product::ThreeD, programLanguage.stored, home.path());
}

} // namespace

QStringList takeMessages() {
    const std::lock_guard lock(messagesMutex);
    return std::exchange(messages, {});
}

int main(int count, char** values) {
    testing::InitGoogleTest(&count, values);
    const TemporaryFolder home;
    settleSurroundings(home);
    qInstallMessageHandler(keepMessage);
    QApplication application(count, values);
    app::compose(application);
    return RUN_ALL_TESTS();
}
