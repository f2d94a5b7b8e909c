// The first start of all: no language was chosen yet, and the system prefers French.

#include "LanguageWindowTest.h"

const ProgramLanguage programLanguage{"", "xx:fr_CA:de"};

namespace {

using FirstStartTest = LanguageWindowTest;

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
    ASSERT_FALSE(std::filesystem::exists(file()));
    const FirstShow watch;
    start();
    EXPECT_EQ(watch.stored, "fr\n");
    EXPECT_EQ(stored(), "fr\n");
}

TEST_F(FirstStartTest, the_language_dialog_opens_on_french_and_not_on_automatic) {
    start();
    EXPECT_EQ(stored(), "fr\n");
    expectDialogOn(u"Français"_s);
}

TEST_F(FirstStartTest, also_where_the_first_start_could_not_store_it) {
    start();
    std::filesystem::remove(file());
    expectDialogOn(u"Français"_s);
    EXPECT_FALSE(std::filesystem::exists(file()));
}

TEST_F(FirstStartTest, without_a_home_it_still_opens_on_french) {
    start();
    const QByteArray home = qgetenv("HOME");
    qunsetenv("HOME");
    expectDialogOn(u"Français"_s);
    qputenv("HOME", home);
}

} // namespace
