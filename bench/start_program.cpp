// The program's own start, watched.
#include "FirstFrame.h"
#include "app/NXImportApp.h"
#include "localization/Language.h"
#include "look/style/Style.h"
#include "look/text/Fonts.h"

#include <QApplication>

using namespace Qt::StringLiterals;
using namespace app;
using namespace localization;

int main(int argc, char* argv[]) {
    QGuiApplication::setDesktopFileName(u"de.norvaxel.orteundrouten"_s);
    QApplication application(argc, argv);
    look::preferLettersOf(nxui::currentLanguage(nxui::Product::ThreeD));
    look::applyLook(application);
    FirstFrame::watch();
    static auto* const controller = new NXImportApp(NXImportApp::Mode::Place);
    controller->applicationDidFinishLaunching();
    return QApplication::exec();
}
