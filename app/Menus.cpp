#include "app/Menus.h"

#include "app/MainWindow.h"
#include "localization/NXLocal.h"
#include "look/text/LiteralText.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMenuBar>
#include <QStackedWidget>

using namespace Qt::StringLiterals;

namespace app {

using localization::NXLocal;

namespace {

// What can be done with a field now. The toolkit's own slots would change a read-only one as well.
bool canCopy(const QLineEdit& field) {
    return field.hasSelectedText();
}
bool canCut(const QLineEdit& field) {
    return canCopy(field) && !field.isReadOnly();
}
bool canPaste(const QLineEdit& field) {
    return !field.isReadOnly() && !QGuiApplication::clipboard()->text().isEmpty();
}
bool canSelect(const QLineEdit& field) {
    return !field.text().isEmpty();
}

void zoom(QWidget* window) {
    window->isMaximized() ? window->showNormal() : window->showMaximized();
}

} // namespace

void addMenus(MainWindow& mainWindow) {
    MainWindow* const w = &mainWindow;
    QMenuBar* bar = w->menuBar();
    const auto addMenu = [bar](const QString& title) { return bar->addMenu(look::literal(title)); };
    const auto addItem = [w](QMenu* menu, const QString& title, const QKeySequence& key, auto act) {
        QAction* item = menu->addAction(look::literal(title));
        item->setShortcut(key);
        QObject::connect(item, &QAction::triggered, w, act);
        return item;
    };
    const auto addEdit = [&](QMenu* menu, const QString& title, QKeySequence::StandardKey key,
                             auto isPossible, auto act) {
        // The field that the person types in, if it can be done there; also while the menu bar has
        // the keyboard.
        const auto field = [w, isPossible] {
            auto* typedIn = qobject_cast<QLineEdit*>(w->pages()->focusWidget());
            return typedIn && isPossible(*typedIn) ? typedIn : nullptr;
        };
        QAction* item = addItem(menu, title, key, [field, act] {
            if (QLineEdit* typedIn = field())
                (typedIn->*act)();
        });
        // Grey while the menu is open; its keys ask anew each time.
        QObject::connect(menu, &QMenu::aboutToShow, item, [=] { item->setEnabled(field()); });
        QObject::connect(menu, &QMenu::aboutToHide, item, [item] { item->setEnabled(true); });
    };

    QMenu* application = addMenu(u"Norvaxel"_s);
    addItem(application, NXLocal(u"Norvaxel beenden"_s), Qt::CTRL | Qt::Key_Q, [w] {
        w->close();
    })->setMenuRole(QAction::QuitRole);

    QMenu* edit = addMenu(NXLocal(u"Bearbeiten"_s));
    addEdit(edit, NXLocal(u"Ausschneiden"_s), QKeySequence::Cut, canCut, &QLineEdit::cut);
    addEdit(edit, NXLocal(u"Kopieren"_s), QKeySequence::Copy, canCopy, &QLineEdit::copy);
    addEdit(edit, NXLocal(u"Einfügen"_s), QKeySequence::Paste, canPaste, &QLineEdit::paste);
    addEdit(edit, NXLocal(u"Alles auswählen"_s), QKeySequence::SelectAll, canSelect,
            &QLineEdit::selectAll);
    // The toolkit's own menu would speak the desktop's language, not the window's.
    for (QLineEdit* field : w->findChildren<QLineEdit*>()) {
        field->setContextMenuPolicy(Qt::CustomContextMenu);
        QObject::connect(field, &QWidget::customContextMenuRequested, edit,
                         [edit, field](QPoint position) {
                             field->setFocus();
                             edit->popup(field->mapToGlobal(position));
                         });
    }

    QMenu* window = addMenu(NXLocal(u"Fenster"_s));
    addItem(window, NXLocal(u"Schließen"_s), Qt::CTRL | Qt::Key_W, [w] { w->close(); });
    addItem(window, NXLocal(u"Im Dock ablegen"_s), Qt::CTRL | Qt::Key_M,
            [w] { w->showMinimized(); });
    addItem(window, NXLocal(u"Zoomen"_s), {}, [w] { zoom(w); });
}

} // namespace app
