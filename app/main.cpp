#include "NXImportApp.h"

#include "Language.h"
#include "Style.h"

#include <QApplication>

using namespace Qt::StringLiterals;

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    look::applyLook(application);
    const bool route = QApplication::arguments().contains("--route"_L1);
    NXImportApp controller(route ? NXImportApp::Mode::Route : NXImportApp::Mode::Place);
    controller.applicationDidFinishLaunching();
    return QApplication::exec();
}
