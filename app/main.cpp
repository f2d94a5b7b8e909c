#include "app/Composition.h"
#include "app/NXImportApp.h"

#include <QApplication>

#include <cstdlib>

using namespace Qt::StringLiterals;

int main(int argc, char* argv[]) {
    // The menu entry's name, by which a desktop finds the window's icon.
    QGuiApplication::setDesktopFileName(QStringLiteral(NORVAXEL_ID));
    QApplication application(argc, argv);
    app::compose(application);
    const bool route = QApplication::arguments().contains("--route"_L1);
    // Lives as long as the process: nobody waits for a window to be taken apart that is gone from
    // the screen. What must not outlive the program ends in applicationWillTerminate().
    static auto* const controller =
        new app::NXImportApp(route ? app::NXImportApp::Mode::Route : app::NXImportApp::Mode::Place);
    controller->applicationDidFinishLaunching();
    const int status = QApplication::exec();
    // All that is ours has ended. On Wayland the toolkit's own end waits for a thread that may be
    // waiting for another one (with 6.4, in some of a hundred ends on a busy machine): the window
    // would be gone, and the process would stay for ever. On X11 it hands the clipboard over.
    if (QGuiApplication::platformName().startsWith("wayland"_L1))
        std::_Exit(status);
    return status;
}
