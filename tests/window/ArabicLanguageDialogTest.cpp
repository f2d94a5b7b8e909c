// The language dialog of a window that is read from right to left.

#include "LanguageWindowTest.h"
#include "localization/NXLocal.h"

using namespace Qt::StringLiterals;
using namespace app;
using namespace localization;

const ProgramLanguage programLanguage{"ar", ""};

namespace {

using ArabicLanguageDialogTest = LanguageWindowTest;

TEST_F(ArabicLanguageDialogTest, the_question_follows_the_window_and_the_confirmation_the_choice) {
    start();
    openDialog();
    EXPECT_EQ(dialog()->layoutDirection(), Qt::RightToLeft);
    EXPECT_EQ(dialog()->heading()->text(), localText(u"Sprache wählen"_s, "ar"));
    EXPECT_EQ(languages()->layoutDirection(), Qt::RightToLeft);
    EXPECT_EQ(languages()->currentText(), u"العربية"_s);
    EXPECT_LT(dialog()->prominentButton()->x(), dialog()->otherButton()->x()) << "mirrored";
    chooseItem(2); // English
    pressProminent();

    look::Panel* confirmation = alert();
    ASSERT_NE(confirmation, nullptr);
    EXPECT_EQ(confirmation->layoutDirection(), Qt::LeftToRight);
    EXPECT_EQ(confirmation->heading()->text(), u"Language saved"_s);
    EXPECT_EQ(confirmation->prominentButton()->layoutDirection(), Qt::LeftToRight);
    pressProminent();
    EXPECT_EQ(alert(), nullptr);
    EXPECT_EQ(stored(), "en\n");
}

TEST_F(ArabicLanguageDialogTest, an_arabic_confirmation_is_read_from_right_to_left) {
    start();
    openDialog();
    pressProminent();
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->layoutDirection(), Qt::RightToLeft);
    EXPECT_EQ(alert()->prominentButton()->title(), u"OK"_s);
    pressProminent();
}

} // namespace
