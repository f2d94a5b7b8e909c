#pragma once

#include "WindowTest.h"
#include "localization/Language.h"

// Base of the tests of the language dialog. Each ends with the stored language and the system's
// languages as they were before it.
class LanguageWindowTest : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        language_ = qgetenv("LANGUAGE");
        stored_ = stored();
    }

    void TearDown() override {
        WindowTest::TearDown();
        qputenv("LANGUAGE", language_);
        std::filesystem::remove(file());
        if (!stored_.empty())
            write(file(), stored_);
    }

    // The file of the stored language and what it holds; empty when there is none.
    static std::filesystem::path file() {
        return nxui::preferencePath(nxui::Product::ThreeD, nxui::homeDirectory());
    }
    static std::string stored() { return contentOf(file()); }
    static void store(std::string_view code) {
        ASSERT_TRUE(
            nxui::saveLanguage(nxui::Product::ThreeD, std::string(code), nxui::homeDirectory()));
    }

    void openDialog() {
        click(button("languageButton"));
        ASSERT_NE(dialog(), nullptr);
    }
    look::Panel* dialog() const { return alert(); }
    look::PopUp* languages() const {
        auto* found = dialog()->findChild<look::PopUp*>();
        if (found == nullptr)
            throw std::runtime_error("there is no choice of languages");
        return found;
    }

    void chooseItem(int item) { choose(languages(), item); }

    // Of the dialog, or of the confirmation after it.
    void pressProminent() {
        click(dialog()->prominentButton());
        settle();
    }
    void pressOther() {
        click(dialog()->otherButton());
        settle();
        EXPECT_EQ(dialog(), nullptr);
    }
    // It opens on the language of that name, and is cancelled.
    void expectDialogOn(const QString& name) {
        openDialog();
        EXPECT_EQ(languages()->currentText(), name);
        pressOther();
    }
    void pressKey(Qt::Key key) {
        WindowTest::key(dialog()->focusWidget() ? dialog()->focusWidget() : dialog(), key);
        settle();
    }

private:
    QByteArray language_;
    std::string stored_;
};
