// The language dialog where the language came from the system, which prefers Canadian French.

#include "LanguageWindowTest.h"

using namespace Qt::StringLiterals;
using namespace app;

const ProgramLanguage programLanguage{"", "fr_CA"};

namespace {

using FirstLanguageDialogTest = LanguageWindowTest;

TEST_F(FirstLanguageDialogTest, it_opens_on_french_and_not_on_automatic) {
    start();
    EXPECT_EQ(stored(), "fr\n");
    openDialog();
    EXPECT_EQ(languages()->currentText(), u"Français"_s);
    pressOther();
}

TEST_F(FirstLanguageDialogTest, also_where_the_first_start_could_not_store_it) {
    start();
    std::filesystem::remove(file());
    openDialog();
    EXPECT_EQ(languages()->currentText(), u"Français"_s);
    pressOther();
    EXPECT_FALSE(std::filesystem::exists(file()));
}

TEST_F(FirstLanguageDialogTest, without_a_home_it_still_opens_on_french) {
    start();
    const QByteArray home = qgetenv("HOME");
    qunsetenv("HOME");
    openDialog();
    EXPECT_EQ(languages()->currentText(), u"Français"_s);
    pressOther();
    qputenv("HOME", home);
}

} // namespace
