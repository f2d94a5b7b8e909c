#pragma once

#include "ChildTest.h"
#include "ImporterTool.h"
#include "ProgramLanguage.h"
#include "TemporaryFolder.h"
#include "app/NXImportApp.h"
#include "look/controls/Button.h"
#include "look/controls/Field.h"
#include "look/controls/Panel.h"
#include "look/controls/PlaceList.h"
#include "look/controls/PopUp.h"
#include "look/controls/Segments.h"
#include "look/controls/Spinner.h"
#include "look/text/Label.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QRadioButton>
#include <QTest>

#include <functional>
#include <optional>

using namespace Qt::StringLiterals;
using namespace app;

// For readable failures.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QRect& r, std::ostream* out) {
    *out << r.x() << ", " << r.y() << ", " << r.width() << " x " << r.height();
}

// Base of the tests of the window. Each test gets its own data and temporary folder, and starts the
// program itself. It ends with the checks that nothing is left (no process, no temporary file, no
// alert) and that Qt had nothing to complain about.
class WindowTest : public ChildTest {
protected:
    using Mode = NXImportApp::Mode;

    void SetUp() override;
    void TearDown() override;

    // Starts the program and waits until its window is the active one.
    void start(Mode mode = Mode::Place);
    // Its window and controls go, as they do when it quits.
    void end();
    MainWindow* window() const { return app_->window(); }

    // The control of that object name; the test fails without it.
    template<typename Control = QWidget>
    Control* control(const char* name) const {
        auto* found = window()->findChild<Control*>(QLatin1StringView(name));
        if (found == nullptr)
            throw std::runtime_error(std::string("there is no control ") + name);
        return found;
    }
    look::Button* button(const char* name) const { return control<look::Button>(name); }
    look::Field* field(const char* name) const { return control<look::Field>(name); }
    look::PopUp* popUp(const char* name) const { return control<look::PopUp>(name); }
    look::PlaceList* list(const char* name) const { return control<look::PlaceList>(name); }
    // The text of a label, whole.
    QString text(const char* label) const { return control<look::Label>(label)->text(); }
    QString status() const { return text("status"); }
    // The segments of a control, from the first to the last.
    QList<QRadioButton*> segments(const char* name) const;

    // Gives the window's content this size.
    void resizeContent(QSize size);
    // Where a control lies on the window's content.
    QRect place(const QWidget* widget) const;
    QRect place(const char* name) const { return place(control(name)); }

    // What a person does.
    void click(QWidget* widget);
    void key(QWidget* widget, Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void paste(QWidget* field, const QString& text);
    void clickRow(look::PlaceList* list, int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void clickRow(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        clickRow(list("table"), row, modifiers);
    }
    void chooseMode(int segment) { click(segments("mode").at(segment)); }
    void choose(look::PopUp* popUp, int index);
    void choose(const char* name, int index) { choose(popUp(name), index); }
    // Replaces the text of the search field and presses Return.
    void search(const QString& text);
    // The same, and waits until the results are there.
    void searchResults(const QString& text);
    // What the tooltip reads that shows at a point of a widget; empty if none does.
    QString toolTipAt(QWidget* widget, QPoint position);

    // The rows of the results as assistive technology reads them.
    QStringList rows() const;
    bool isBusy() const { return !control("cancelButton")->isHidden(); }
    // Something in the status line is red.
    bool statusIsRed() const;
    look::Panel* alert() const;
    // Answers the alert with its prominent button; it goes.
    void closeAlert();
    // Runs the program until it ends, with status 0 and without a window; `act` is called as soon
    // as it runs.
    void runToTheEnd(const std::function<void()>& act);
    QDir temporaryFolder() const;
    QDir supportFolder() const;

    std::optional<ImporterTool> importer;

private:
    std::optional<TemporaryFolder> folder_;
    std::unique_ptr<NXImportApp> app_;
};

// Waits with a running event loop; false when it takes too long.
template<typename Predicate>
bool eventually(Predicate holds, std::chrono::milliseconds patience = std::chrono::seconds(30)) {
    return QTest::qWaitFor(holds, int(patience.count()));
}

// Lets everything happen that is due now.
void settle();

// The controls of a kind that show in a window or in a part of it, but not in other windows over
// it.
template<typename Control>
QList<Control*> shown(const QWidget* parent) {
    QList<Control*> controls;
    for (Control* each : parent->findChildren<Control*>())
        if (each->isVisible() && each->window() == parent->window())
            controls += each;
    return controls;
}

// A colour as "#rrggbb".
inline std::string hex(QRgb colour) {
    return QColor(colour).name().toStdString();
}

#define EXPECT_EVENTUALLY(condition)                                                               \
    EXPECT_TRUE(eventually([&] { return (condition); })) << #condition
#define ASSERT_EVENTUALLY(condition)                                                               \
    ASSERT_TRUE(eventually([&] { return (condition); })) << #condition

// What the window says.
namespace says {
inline const QString ready = u"Gib einen Ort ein und starte die Suche."_s;
inline const QString searching = u"Orte werden gesucht …"_s;
inline const QString choose =
    u"Wähle einen Treffer aus. Gleichnamige Orte stehen mit Region und Land in der Liste."_s;
inline const QString chosen = u"Ort ausgewählt. Umkreis festlegen und Ortsdaten laden."_s;
inline const QString nothing = u"Kein Ort gefunden. Ergänze den Namen um Land oder Region."_s;
inline const QString badQuery = u"Bitte einen Ortsnamen mit höchstens 300 Zeichen eingeben."_s;
inline const QString unreadable = u"Die Ortssuche hat eine unlesbare Antwort geliefert."_s;
inline const QString searchCancelled = u"Suche abgebrochen."_s;
inline const QString firstHint = u"Suchergebnisse · wähle einen Ort aus"_s;
inline const QString loading =
    u"Ortsdaten, Gebäude und Gelände werden für Norvaxel 3D geladen. Das kann etwas dauern …"_s;
inline const QString finished =
    u"Norvaxel-3D-Paket fertig – im Plugin »Letzten Import laden« wählen."_s;
inline const QString importCancelled =
    u"Import abgebrochen. Du kannst einen anderen Ort oder Umkreis wählen."_s;
inline const QString routeReady =
    u"Stadt oder Adresse suchen, Treffer auswählen und als Station hinzufügen. "
    "Mindestens zwei Stationen sind nötig."_s;
} // namespace says
