// The first start of all: no language was chosen yet, and the system prefers French.

#include "WindowTest.h"
#include "localization/Language.h"
#include "localization/NXLocal.h"

#include <QMenu>
#include <QMenuBar>

using namespace Qt::StringLiterals;
using namespace app;
using namespace localization;

const ProgramLanguage programLanguage{"", "xx:fr_CA:de"};

namespace {

using FirstStartTest = WindowTest;

// Remembers what was stored when the first window showed.
class FirstShow : public QObject {
public:
    FirstShow() { qApp->installEventFilter(this); }
    std::optional<std::string> stored;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Show && !stored)
            stored = contentOf(nxui::preferencePath(nxui::Product::ThreeD, nxui::homeDirectory()));
        return false;
    }
};

TEST_F(FirstStartTest, the_systems_language_is_stored_before_the_window_shows) {
    const auto file = nxui::preferencePath(nxui::Product::ThreeD, nxui::homeDirectory());
    ASSERT_FALSE(std::filesystem::exists(file));
    const FirstShow watch;
    start();
    EXPECT_EQ(watch.stored, "fr\n");
    EXPECT_EQ(contentOf(file), "fr\n");
}

TEST_F(FirstStartTest, every_menu_title_is_in_that_language) {
    start();
    QStringList titles;
    for (const QAction* menu : window()->menuBar()->actions()) {
        titles += menu->text();
        for (const QAction* item : menu->menu()->actions())
            titles += item->text();
    }
    QStringList expected{u"Norvaxel"_s};
    for (const QString& german :
         {u"Norvaxel beenden"_s, u"Bearbeiten"_s, u"Ausschneiden"_s, u"Kopieren"_s, u"Einfügen"_s,
          u"Alles auswählen"_s, u"Fenster"_s, u"Schließen"_s, u"Im Dock ablegen"_s, u"Zoomen"_s})
        expected += localText(german, "fr");
    EXPECT_EQ(titles, expected);
    EXPECT_NE(titles.at(1), u"Norvaxel beenden"_s);
}

} // namespace
