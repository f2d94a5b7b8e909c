// The dialog that changes the interface's language, in a window that speaks German.

#include "Geocoder.h"
#include "LanguageWindowTest.h"
#include "localization/NXLocal.h"

#include <QListView>

using namespace localization;

const ProgramLanguage programLanguage{"de", ""};

namespace {

const QString question = u"Sprache wählen"_s;
const QString saved = u"Sprache gespeichert"_s;
const QString explanation =
    u"Die neue Sprache ist gespeichert. Dieses Suchfenster wird beim nächsten Öffnen aktualisiert. Bitte DaVinci Resolve neu starten."_s;
const QString notSaved = u"Die Sprache konnte nicht lokal gespeichert werden."_s;

const QStringList names{u"Deutsch"_s,   u"English"_s,  u"Русский"_s, u"Español"_s, u"Français"_s,
                        u"Português"_s, u"Italiano"_s, u"Polski"_s,  u"Türkçe"_s,  u"简体中文"_s,
                        u"日本語"_s,    u"한국어"_s,   u"العربية"_s, u"हिन्दी"_s};

class LanguageDialogTest : public LanguageWindowTest {
protected:
    void SetUp() override {
        LanguageWindowTest::SetUp();
        geocoder.reset();
        store("de");
    }

    static int itemOf(std::string_view code) {
        const auto found = std::ranges::find(nxui::languageCodes, code);
        return int(found - nxui::languageCodes.begin()) + 1;
    }

    // Opens the dialog, chooses an item and takes it over.
    void chooseAndApply(int item) {
        openDialog();
        chooseItem(item);
        pressProminent();
    }

    // The confirmation is there, in this language; it is closed with its button.
    void expectConfirmation(const std::string& language) {
        SCOPED_TRACE(language);
        look::Panel* confirmation = alert();
        ASSERT_NE(confirmation, nullptr);
        EXPECT_EQ(confirmation->heading()->text(), localText(saved, language));
        EXPECT_EQ(confirmation->information()->text(), localText(explanation, language));
        EXPECT_EQ(confirmation->prominentButton()->title(), u"OK"_s);
        EXPECT_EQ(confirmation->otherButton(), nullptr);
        EXPECT_EQ(confirmation->layoutDirection(),
                  language == "ar" ? Qt::RightToLeft : Qt::LeftToRight);
        pressProminent();
        EXPECT_EQ(alert(), nullptr);
    }
};

TEST_F(LanguageDialogTest, it_asks_in_the_running_language) {
    start();
    openDialog();
    EXPECT_EQ(dialog()->heading()->text(), question);
    EXPECT_EQ(dialog()->information()->text(),
              u"Die Sprache wird nur auf diesem Gerät gespeichert."_s);
    EXPECT_EQ(dialog()->prominentButton()->title(), u"Übernehmen"_s);
    ASSERT_NE(dialog()->otherButton(), nullptr);
    EXPECT_EQ(dialog()->otherButton()->title(), u"Abbrechen"_s);
    EXPECT_EQ(dialog()->layoutDirection(), Qt::LeftToRight);
    EXPECT_EQ(dialog()->window(), window()) << "a part of it";
    EXPECT_EQ(languages()->size(), QSize(300, 28));
    QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(dialog());
    EXPECT_EQ(spoken->role(), QAccessible::Dialog);
    EXPECT_EQ(spoken->text(QAccessible::Name), question);
    const auto captions = QAccessible::queryAccessibleInterface(languages())->relations();
    ASSERT_EQ(captions.size(), 1);
    EXPECT_EQ(captions.first().first->text(QAccessible::Name), question);
    pressOther();
}

TEST_F(LanguageDialogTest, it_offers_the_systems_language_and_fourteen_by_their_own_names) {
    start();
    openDialog();
    QStringList items;
    for (int i = 0; i < languages()->count(); ++i)
        items += languages()->itemText(i);
    EXPECT_EQ(items, QStringList(u"Automatisch (Systemsprache)"_s) + names);
    pressOther();
}

TEST_F(LanguageDialogTest, it_opens_on_the_stored_language) {
    start();
    for (const std::string_view code : nxui::languageCodes) {
        store(code);
        expectDialogOn(names.at(itemOf(code) - 1));
    }
}

TEST_F(LanguageDialogTest, without_a_stored_language_it_opens_on_the_running_one) {
    start();
    qputenv("LANGUAGE", "ja");
    std::filesystem::remove(file());
    expectDialogOn(u"Deutsch"_s);
    // Nothing in the file is repaired.
    write(file(), "Japanese\n");
    expectDialogOn(u"Deutsch"_s);
}

TEST_F(LanguageDialogTest, each_language_is_stored_and_confirmed_in_itself) {
    start();
    for (const std::string_view code : nxui::languageCodes) {
        SCOPED_TRACE(code);
        chooseAndApply(itemOf(code));
        EXPECT_EQ(stored(), std::string(code) + "\n");
        expectConfirmation(std::string(code));
    }
}

TEST_F(LanguageDialogTest, english_is_confirmed_in_english) {
    start();
    chooseAndApply(itemOf("en"));
    ASSERT_NE(alert(), nullptr);
    EXPECT_EQ(alert()->heading()->text(), u"Language saved"_s);
    EXPECT_EQ(
        alert()->information()->text(),
        u"Your new language is saved. This search window will update the next time it opens. Please restart DaVinci Resolve."_s);
    pressProminent();
}

TEST_F(LanguageDialogTest, the_confirmations_button_reads_ok_even_in_turkish) {
    ASSERT_EQ(localText(u"OK"_s, "tr"), u"Tamam"_s) << "nothing could go wrong here otherwise";
    start();
    chooseAndApply(itemOf("tr"));
    expectConfirmation("tr");
}

TEST_F(LanguageDialogTest, the_running_window_keeps_its_language) {
    start();
    chooseAndApply(itemOf("ar"));
    expectConfirmation("ar");
    EXPECT_EQ(status(), says::ready) << "the status says nothing of it";
    EXPECT_EQ(button("downloadButton")->title(), u"Ortsdaten laden"_s);
    EXPECT_EQ(window()->layoutDirection(), Qt::LeftToRight);
    chooseMode(1);
    EXPECT_EQ(status(), says::routeReady);
    openDialog();
    EXPECT_EQ(dialog()->heading()->text(), question);
    EXPECT_EQ(dialog()->layoutDirection(), Qt::LeftToRight);
    EXPECT_EQ(languages()->currentText(), u"العربية"_s) << "what is stored now";
    pressOther();
}

TEST_F(LanguageDialogTest, automatic_is_resolved_now) {
    start();
    const struct {
        const char* system;
        const char* stored;
    } systems[] = {{"zh-Hant:ja-JP", "ja\n"},
                   {"xx", "en\n"},
                   {"fr_CA", "fr\n"},
                   {"zh_TW:ko", "ko\n"},
                   {"", "en\n"}};
    for (const auto& [system, code] : systems) {
        SCOPED_TRACE(system);
        store("de");
        qputenv("LANGUAGE", system);
        chooseAndApply(0);
        EXPECT_EQ(stored(), code);
        expectConfirmation(std::string(code, 2));
    }
    qputenv("LANGUAGE", "pl");
    expectDialogOn(u"English"_s); // it does not follow the system later
}

TEST_F(LanguageDialogTest, only_this_variants_file_is_written) {
    const auto other = nxui::preferencePath(nxui::Product::TwoD, nxui::homeDirectory());
    start();
    chooseAndApply(itemOf("ja"));
    expectConfirmation("ja");
    EXPECT_FALSE(std::filesystem::exists(other));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(file().parent_path()), {}), 1)
        << "no temporary file is left";
}

TEST_F(LanguageDialogTest, a_cancelled_one_writes_nothing) {
    start();
    const auto cancel = [this](int way) {
        switch (way) {
        case 0:
            return pressOther();
        case 1:
            return pressKey(Qt::Key_Escape);
        default:
            dialog()->close();
            settle();
        }
    };
    for (const bool exists : {true, false}) {
        for (int way = 0; way < 3; ++way) {
            SCOPED_TRACE(way);
            if (!exists)
                std::filesystem::remove(file());
            openDialog();
            chooseItem(itemOf("ja"));
            cancel(way);
            EXPECT_EQ(alert(), nullptr) << "no confirmation";
            EXPECT_EQ(std::filesystem::exists(file()), exists);
            EXPECT_EQ(stored(), exists ? "de\n" : "");
            EXPECT_EQ(status(), says::ready);
        }
    }
}

TEST_F(LanguageDialogTest, keys_choose_take_over_and_confirm) {
    start();
    button("languageButton")->setFocus();
    key(button("languageButton"), Qt::Key_Space);
    ASSERT_NE(dialog(), nullptr);
    EXPECT_TRUE(dialog()->isAncestorOf(QApplication::focusWidget()));
    languages()->setFocus();
    key(languages(), Qt::Key_Down);
    pressKey(Qt::Key_Return);
    EXPECT_EQ(stored(), "en\n");
    ASSERT_NE(alert(), nullptr);
    pressKey(Qt::Key_Escape);
    EXPECT_EQ(alert(), nullptr);
}

TEST_F(LanguageDialogTest, the_mouse_chooses_from_the_list) {
    start();
    openDialog();
    click(languages());
    QAbstractItemView* view = languages()->view();
    ASSERT_EVENTUALLY(view->isVisible());
    // The press that opened the list has to be over, for a person as well.
    const QModelIndex item = view->model()->index(itemOf("pl"), 0);
    view->scrollTo(item);
    ASSERT_EVENTUALLY([&] {
        if (view->isVisible())
            QTest::mouseClick(view->viewport(), Qt::LeftButton, {},
                              view->visualRect(item).center());
        return !view->isVisible();
    }());
    EXPECT_EQ(languages()->currentText(), u"Polski"_s);
    pressProminent();
    EXPECT_EQ(stored(), "pl\n");
    expectConfirmation("pl");
}

TEST_F(LanguageDialogTest, a_double_click_does_not_close_the_confirmation_as_well) {
    start();
    openDialog();
    chooseItem(itemOf("en"));
    const look::Button* apply = dialog()->prominentButton();
    const QPoint place = apply->mapTo(window(), apply->rect().center());
    QTest::mouseDClick(window()->windowHandle(), Qt::LeftButton, {}, place);
    settle();
    ASSERT_NE(alert(), nullptr);
    const look::Button* ok = alert()->prominentButton();
    EXPECT_TRUE(QRect(ok->mapTo(window(), QPoint()), ok->size()).contains(place))
        << "nothing could go wrong here otherwise";
    expectConfirmation("en");
}

TEST_F(LanguageDialogTest, what_cannot_be_saved_is_told_by_the_status_alone) {
    start();
    const auto folder = file().parent_path();
    const QByteArray home = qgetenv("HOME");
    const TemporaryFolder foreign;
    write(foreign / "file", "mine");
    const struct {
        const char* what;
        std::function<void()> spoil, repair;
    } ways[] = {
        {"no home", [] { qunsetenv("HOME"); }, [&] { qputenv("HOME", home); }},
        {"an empty home", [] { qputenv("HOME", ""); }, [&] { qputenv("HOME", home); }},
        {"a link at the path",
         [&] {
             std::filesystem::remove(file());
             std::filesystem::create_symlink(foreign / "file", file());
         },
         [&] { std::filesystem::remove(file()); }},
        {"a file in the folder's place",
         [&] {
             std::filesystem::remove_all(folder);
             write(folder, "");
         },
         [&] { std::filesystem::remove(folder); }},
    };
    for (const auto& [what, spoil, repair] : ways) {
        SCOPED_TRACE(what);
        chooseMode(1);
        chooseMode(0);
        EXPECT_EQ(status(), says::ready);
        spoil();
        for (const int item : {itemOf("ja"), 0}) {
            chooseAndApply(item);
            EXPECT_EQ(alert(), nullptr) << "no confirmation";
            EXPECT_EQ(status(), notSaved);
            EXPECT_TRUE(statusIsRed());
        }
        repair();
        store("de");
    }
    EXPECT_EQ(contentOf(foreign / "file"), "mine");
    chooseAndApply(itemOf("en"));
    expectConfirmation("en");
}

TEST_F(LanguageDialogTest, nothing_happens_while_the_window_is_busy) {
    const auto expectNothing = [this](const QString& said) {
        EXPECT_FALSE(control("languageButton")->isEnabled());
        click(button("languageButton"));
        Q_EMIT button("languageButton")->clicked();
        EXPECT_EQ(alert(), nullptr);
        EXPECT_EQ(status(), said);
        click(button("cancelButton"));
    };
    geocoder.behave({{"hang"_L1, true}});
    start();
    search(u"Berlin"_s);
    expectNothing(says::searching);

    geocoder.reset();
    importer->useStandIn("60");
    searchResults(u"Berlin"_s);
    clickRow(0);
    click(button("downloadButton"));
    expectNothing(says::loading);
    ASSERT_EVENTUALLY(!isBusy());
    openDialog();
    pressOther();
}

TEST_F(LanguageDialogTest, a_second_click_behind_it_opens_no_second_one) {
    start();
    openDialog();
    look::Button* pressed = button("languageButton");
    // To the window, as a mouse does: the dialog keeps what is not for it away.
    QTest::mouseClick(window()->windowHandle(), Qt::LeftButton, {},
                      pressed->mapTo(window(), pressed->rect().center()));
    settle();
    EXPECT_EQ(window()->findChildren<look::Panel*>().size(), 1);
    pressOther();
}

TEST_F(LanguageDialogTest, a_key_that_closes_the_list_does_nothing_to_the_dialog) {
    start();
    openDialog();
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Return}) {
        languages()->showPopup();
        ASSERT_TRUE(languages()->view()->isVisible());
        // Not every desktop gives the list the keyboard.
        QTest::keyClick(window()->windowHandle(), key);
        ASSERT_NE(dialog(), nullptr);
        ASSERT_EQ(dialog()->heading()->text(), question);
        EXPECT_FALSE(languages()->view()->isVisible());
        EXPECT_EQ(stored(), "de\n");
    }
    QTest::keyClick(window()->windowHandle(), Qt::Key_Escape);
    settle();
    EXPECT_EQ(dialog(), nullptr) << "the next key is the dialog's";
}

TEST_F(LanguageDialogTest, a_key_that_comes_with_the_one_that_closes_the_list_is_the_dialogs) {
    start();
    openDialog();
    languages()->showPopup();
    // To the widgets, and so in one turn of the event loop.
    QTest::keyClick(languages()->view(), Qt::Key_Escape);
    ASSERT_NE(dialog(), nullptr);
    QTest::keyClick(dialog(), Qt::Key_Escape);
    settle();
    EXPECT_EQ(dialog(), nullptr);
}

} // namespace
