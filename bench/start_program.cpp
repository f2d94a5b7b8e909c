// The program's own start, watched.
#include "FirstFrame.h"
#include "NXImportApp.h"
#include "Style.h"

#include <QApplication>

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    look::applyLook(application);
    FirstFrame::watch();
    NXImportApp controller(NXImportApp::Mode::Place);
    controller.applicationDidFinishLaunching();
    return QApplication::exec();
}
