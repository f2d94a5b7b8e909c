// The main of the look's tests and what they share.

#include "LookTest.h"
#include "look/style/Style.h"
#include "look/style/ToolTip.h"

#include <QFont>
#include <QHelpEvent>
#include <QTemporaryDir>

#include <ctime>

namespace {

QStringList messages;

void keepMessage(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    // The platform without a screen lacks some functions and says so whenever Qt calls them.
    if (!text.startsWith("This plugin does not support"_L1))
        messages += qFormatLogMessage(type, context, text);
}

} // namespace

std::chrono::nanoseconds workOfThisThread() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

void LookTest::SetUp() {
    messages.clear();
    window.resize(800, 600);
}

void LookTest::TearDown() {
    look::hideToolTip();
    QApplication::setLayoutDirection(Qt::LeftToRight);
    EXPECT_TRUE(messages.isEmpty()) << messages.join(u'\n').toStdString();
}

void LookTest::enter(QWidget& other) {
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
}

QImage LookTest::picture(QWidget& widget) {
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

QRgb LookTest::colourAt(QWidget& widget, QPoint position) {
    return picture(widget).pixel(position);
}

bool LookTest::showsToolTip(QWidget& widget) {
    look::hideToolTip();
    QHelpEvent help(QEvent::ToolTip, QPoint(5, 5), widget.mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(&widget, &help);
    return look::shownToolTip();
}

QRect LookTest::ink(const QImage& picture, QRect within) {
    const QRgb ground = picture.pixel(within.topLeft());
    QRect found;
    for (int y = within.top(); y <= within.bottom(); ++y) {
        for (int x = within.left(); x <= within.right(); ++x)
            if (picture.pixel(x, y) != ground)
                found |= QRect(x, y, 1, 1);
    }
    return found;
}

int main(int count, char** values) {
    testing::InitGoogleTest(&count, values);
    const QTemporaryDir runtime;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("XDG_RUNTIME_DIR", runtime.path().toUtf8());
    qunsetenv("QT_STYLE_OVERRIDE");
    qunsetenv("QT_SCALE_FACTOR");
    qInstallMessageHandler(keepMessage);
    QApplication application(count, values);
    QApplication::setFont(QFont(u"Inter"_s));
    look::applyLook(application);
    return RUN_ALL_TESTS();
}
