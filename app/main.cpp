#include "app/Composition.h"
#include "app/NXImportApp.h"

#include <QApplication>

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
    return QApplication::exec();
}
