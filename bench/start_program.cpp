// The program's own start, watched.
#include "FirstFrame.h"
#include "app/Composition.h"
#include "app/NXImportApp.h"

#include <QApplication>

using namespace Qt::StringLiterals;
using namespace app;

int main(int argc, char* argv[]) {
    QGuiApplication::setDesktopFileName(u"de.norvaxel.orteundrouten"_s);
    QApplication application(argc, argv);
    app::compose(application);
    FirstFrame::watch();
    static auto* const controller = new NXImportApp(NXImportApp::Mode::Place);
    controller->applicationDidFinishLaunching();
    return QApplication::exec();
}
