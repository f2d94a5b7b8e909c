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
    // What a context menu offers that is asked for at a point of a widget, by the mouse or by the
    // menu key; the first item is then chosen, and what the clipboard holds comes last.
    QStringList chooseFirst(QWidget* asked, QPoint at, QContextMenuEvent::Reason reason) {
        QGuiApplication::clipboard()->setText(u"before"_s);
        QContextMenuEvent event(reason, at, asked->mapToGlobal(at));
        QCoreApplication::sendEvent(asked, &event);
        QStringList all;
        if (auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
            for (const QAction* each : menu->actions())
                all += each->text();
            key(menu, Qt::Key_Down);
            key(menu, Qt::Key_Return);
        }
        return all << QGuiApplication::clipboard()->text();
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

// In the menu bar, also with the keyboard in it, and as the fields' own menu; and only while it is
// open, since there its items are chosen by sight, and everywhere else by their keys.
TEST_F(MenuTest, what_cannot_be_done_now_is_grey_while_the_menu_is_open) {
    start();
    QMenu* edit = window()->menuBar()->actions().at(1)->menu();
    QClipboard* clipboard = QGuiApplication::clipboard();
    const auto possible = [&](const std::function<void()>& open) {
        open();
        EXPECT_TRUE(edit->isVisible());
        QStringList all;
        for (const QAction* each : edit->actions())
            if (each->isEnabled())
                all += each->text();
        edit->close();
        window()->activateWindow(); // the screen that nobody sees leaves that to us
        settle();
        if (window()->menuBar()->hasFocus())
            key(window()->menuBar(), Qt::Key_Escape);
        for (const QAction* each : edit->actions())
            EXPECT_TRUE(each->isEnabled());
        return all.join(u' ');
    };
    const auto inTheBar = [&] {
        QTest::keyPress(window()->windowHandle(), Qt::Key_Alt, Qt::AltModifier);
        QTest::keyRelease(window()->windowHandle(), Qt::Key_Alt, Qt::AltModifier);
        key(window()->menuBar(), Qt::Key_Right);
        key(window()->menuBar(), Qt::Key_Down);
    };
    const struct {
        const char* control;
        QString text;
        bool isSelected;
        QString copied;
        QString possible;
    } states[] = {
        {"query", {}, false, {}, {}},
        {"query", {}, false, u"Aachen"_s, u"Einfügen"_s},
        {"query", u"Köln"_s, false, {}, u"Alles auswählen"_s},
        {"query", u"Köln"_s, true, {}, u"Ausschneiden Kopieren Alles auswählen"_s},
        {"query", u"Köln"_s, true, u"Bonn"_s, u"Ausschneiden Kopieren Einfügen Alles auswählen"_s},
        {"endpointField", u"https"_s, false, u"Bonn"_s, u"Alles auswählen"_s},
        {"endpointField", u"https"_s, true, u"Bonn"_s, u"Kopieren Alles auswählen"_s},
        {"languageButton", {}, false, u"Bonn"_s, {}},
    };
    for (const auto& [name, text, isSelected, copied, expected] : states) {
        SCOPED_TRACE(name + (u' ' + text + u' ' + copied).toStdString());
        control(name)->setFocus();
        auto* field = qobject_cast<look::Field*>(control(name));
        if (field) {
            field->setText(text);
            isSelected ? field->selectAll() : field->deselect();
        }
        clipboard->setText(copied);
        EXPECT_EQ(possible(inTheBar), expected);
        if (field) {
            QContextMenuEvent asked(QContextMenuEvent::Keyboard, {5, 5}, {});
            EXPECT_EQ(possible([&] { QCoreApplication::sendEvent(field, &asked); }), expected);
        }
    }
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

TEST_F(MenuTest, a_message_is_copied_whole_by_the_mouse_and_by_the_menu_key) {
    start();
    const QString message =
        u"<b>Nicht</b> &erreichbar: "_s + u"ein sehr langer Grund "_s.repeated(50);
    auto* label = control<look::Label>("status");
    window()->setStatus(message, StatusKind::Error);
    const QStringList copied{u"Kopieren"_s, message};
    EXPECT_TRUE(label->isElided());
    EXPECT_EQ(chooseFirst(label, {300, 20}, QContextMenuEvent::Mouse), copied);
    // From every control without a menu of its own; the focus stays.
    for (const char* name : {"languageButton", "table", "radius"}) {
        control(name)->setFocus();
        EXPECT_EQ(chooseFirst(control(name), {5, 5}, QContextMenuEvent::Keyboard), copied) << name;
        EXPECT_TRUE(control(name)->hasFocus()) << name;
    }
    EXPECT_EQ(chooseFirst(control("credit"), {5, 5}, QContextMenuEvent::Mouse),
              QStringList(u"before"_s));

    const QString reason = u"Zugang & <i>Netz</i>"_s;
    window()->showAlert(u"Import fehlgeschlagen"_s, reason, u"OK"_s);
    settle();
    const QStringList copiedReason{u"Kopieren"_s, reason};
    EXPECT_EQ(chooseFirst(alert()->information(), {50, 5}, QContextMenuEvent::Mouse), copiedReason);
    EXPECT_EQ(chooseFirst(alert()->prominentButton(), {5, 5}, QContextMenuEvent::Keyboard),
              copiedReason);
    closeAlert();
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
