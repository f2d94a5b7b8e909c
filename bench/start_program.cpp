// The program's own start, watched.
#include "FirstFrame.h"
#include "Fonts.h"
#include "Language.h"
#include "NXImportApp.h"
#include "Style.h"

#include <QApplication>

int main(int argc, char* argv[]) {
    QGuiApplication::setDesktopFileName(QStringLiteral("de.norvaxel.orteundrouten"));
    QApplication application(argc, argv);
    look::preferLettersOf(nxui::currentLanguage(nxui::Product::ThreeD));
    look::applyLook(application);
    FirstFrame::watch();
    static auto* const controller = new NXImportApp(NXImportApp::Mode::Place);
    controller->applicationDidFinishLaunching();
    return QApplication::exec();
}
