// The menus: what they are called, and that their items do what they say.

#include "WindowTest.h"

#include <QClipboard>
#include <QMenu>
#include <QMenuBar>

namespace {

class MenuTest : public WindowTest {
protected:
    QAction* item(const QString& title) const {
        for (const QAction* menu : window()->menuBar()->actions()) {
            for (QAction* each : menu->menu()->actions())
                if (each->text() == title)
                    return each;
        }
        throw std::runtime_error("there is no item " + title.toStdString());
    }
    // Every way to an item: its key and a click on it.
    void pressKeyOf(const QString& title) {
        const QKeyCombination keys = item(title)->shortcut()[0];
        key(QApplication::focusWidget(), keys.key(), keys.keyboardModifiers());
    }
};

struct Item {
    QString title;
    QString shortcut;
    bool operator==(const Item&) const = default;
};
void PrintTo(const Item& item, std::ostream* out) {
    *out << item.title.toStdString() << " (" << item.shortcut.toStdString() << ')';
}

QList<Item> itemsOf(const QAction* menu) {
    QList<Item> all;
    for (const QAction* each : menu->menu()->actions())
        all += {each->text(), each->shortcut().toString(QKeySequence::PortableText)};
    return all;
}

TEST_F(MenuTest, titles_and_keys) {
    start();
    const auto menus = window()->menuBar()->actions();
    ASSERT_EQ(menus.size(), 3);
    EXPECT_EQ(menus.at(0)->text(), u"Norvaxel"_s);
    EXPECT_EQ(itemsOf(menus.at(0)), QList<Item>({{u"Norvaxel beenden"_s, u"Ctrl+Q"_s}}));
    EXPECT_EQ(menus.at(1)->text(), u"Bearbeiten"_s);
    EXPECT_EQ(itemsOf(menus.at(1)), QList<Item>({{u"Ausschneiden"_s, u"Ctrl+X"_s},
                                                 {u"Kopieren"_s, u"Ctrl+C"_s},
                                                 {u"Einfügen"_s, u"Ctrl+V"_s},
                                                 {u"Alles auswählen"_s, u"Ctrl+A"_s}}));
    EXPECT_EQ(menus.at(2)->text(), u"Fenster"_s);
    EXPECT_EQ(itemsOf(menus.at(2)), QList<Item>({{u"Schließen"_s, u"Ctrl+W"_s},
                                                 {u"Im Dock ablegen"_s, u"Ctrl+M"_s},
                                                 {u"Zoomen"_s, QString()}}));
    for (const QAction* menu : menus) {
        EXPECT_EQ(menu->menu()->title(), menu->text());
        for (const QAction* each : menu->menu()->actions())
            EXPECT_FALSE(each->isSeparator());
    }
}

TEST_F(MenuTest, editing_reaches_the_field_that_has_the_cursor) {
    start(Mode::Route);
    QClipboard* clipboard = QGuiApplication::clipboard();
    for (const char* name : {"query", "routeEndpointField"}) {
        SCOPED_TRACE(name);
        auto* field = this->field(name);
        field->setText(u"Köln & Bonn"_s);
        field->setFocus();
        field->deselect();
        item(u"Alles auswählen"_s)->trigger();
        EXPECT_EQ(field->selectedText(), u"Köln & Bonn"_s);
        item(u"Kopieren"_s)->trigger();
        EXPECT_EQ(clipboard->text(), u"Köln & Bonn"_s);
        EXPECT_EQ(field->text(), u"Köln & Bonn"_s);
        clipboard->clear();
        item(u"Ausschneiden"_s)->trigger();
        EXPECT_EQ(clipboard->text(), u"Köln & Bonn"_s);
        EXPECT_EQ(field->text(), QString());
        clipboard->setText(u"Aachen"_s);
        item(u"Einfügen"_s)->trigger();
        EXPECT_EQ(field->text(), u"Aachen"_s);
    }
}

TEST_F(MenuTest, editing_by_its_keys_reaches_the_field_that_has_the_cursor) {
    start();
    choose("endpoint", 3);
    auto* field = this->field("endpointField");
    field->setText(u"https://a.example"_s);
    field->setFocus();
    pressKeyOf(u"Alles auswählen"_s);
    pressKeyOf(u"Ausschneiden"_s);
    EXPECT_EQ(field->text(), QString());
    pressKeyOf(u"Einfügen"_s);
    pressKeyOf(u"Einfügen"_s);
    EXPECT_EQ(field->text(), u"https://a.examplehttps://a.example"_s);
    EXPECT_EQ(this->field("query")->text(), QString());
}

TEST_F(MenuTest, a_read_only_field_can_be_copied_but_not_changed) {
    start();
    auto* field = this->field("endpointField");
    const QString address = field->text();
    field->setFocus();
    item(u"Alles auswählen"_s)->trigger();
    item(u"Kopieren"_s)->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), address);
    item(u"Ausschneiden"_s)->trigger();
    QGuiApplication::clipboard()->setText(u"anderes"_s);
    item(u"Einfügen"_s)->trigger();
    EXPECT_EQ(field->text(), address);
}

TEST_F(MenuTest, editing_without_a_field_does_nothing) {
    start();
    control("languageButton")->setFocus();
    for (const QString& title :
         {u"Ausschneiden"_s, u"Kopieren"_s, u"Einfügen"_s, u"Alles auswählen"_s})
        item(title)->trigger();
    EXPECT_EQ(field("query")->text(), QString());
    EXPECT_EQ(field("query")->selectedText(), QString());
}

TEST_F(MenuTest, closing_and_quitting_close_the_window_and_end_the_program) {
    ASSERT_TRUE(QGuiApplication::quitOnLastWindowClosed());
    for (const QString& title : {u"Schließen"_s, u"Norvaxel beenden"_s}) {
        SCOPED_TRACE(title.toStdString());
        start();
        runToTheEnd([&] { pressKeyOf(title); });
        end();
    }
}

TEST_F(MenuTest, minimising_and_zooming) {
    start();
    pressKeyOf(u"Im Dock ablegen"_s);
    EXPECT_TRUE(window()->isMinimized());
    window()->showNormal();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window()));
    item(u"Zoomen"_s)->trigger();
    EXPECT_TRUE(window()->isMaximized());
    item(u"Zoomen"_s)->trigger();
    EXPECT_FALSE(window()->isMaximized());
    EXPECT_TRUE(window()->isVisible());
}

} // namespace
