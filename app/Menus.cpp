#include "app/Menus.h"

#include "app/MainWindow.h"
#include "localization/NXLocal.h"
#include "look/text/LiteralText.h"

#include <QApplication>
#include <QLineEdit>
#include <QMenuBar>

using namespace Qt::StringLiterals;

namespace app {

using localization::NXLocal;

namespace {

// What the menu's editing items act on: the field that the person types in, if there is one.
QLineEdit* focusedField() {
    return qobject_cast<QLineEdit*>(QApplication::focusWidget());
}

// Whether an editing item changes the text.
enum class Change { No, Yes };

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
                             Change change, auto act) {
        addItem(menu, title, key, [change, act] {
            QLineEdit* field = focusedField();
            // The toolkit's own slots would change a read-only field as well.
            if (field && (change == Change::No || !field->isReadOnly()))
                (field->*act)();
        });
    };

    QMenu* application = addMenu(u"Norvaxel"_s);
    addItem(application, NXLocal(u"Norvaxel beenden"_s), Qt::CTRL | Qt::Key_Q, [w] {
        w->close();
    })->setMenuRole(QAction::QuitRole);

    QMenu* edit = addMenu(NXLocal(u"Bearbeiten"_s));
    addEdit(edit, NXLocal(u"Ausschneiden"_s), QKeySequence::Cut, Change::Yes, &QLineEdit::cut);
    addEdit(edit, NXLocal(u"Kopieren"_s), QKeySequence::Copy, Change::No, &QLineEdit::copy);
    addEdit(edit, NXLocal(u"Einfügen"_s), QKeySequence::Paste, Change::Yes, &QLineEdit::paste);
    addEdit(edit, NXLocal(u"Alles auswählen"_s), QKeySequence::SelectAll, Change::No,
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
