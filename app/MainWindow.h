#pragma once

#include "app/ControlStates.h"
#include "app/Sentences.h"

#include <QMainWindow>
#include <QString>

#include <functional>
#include <optional>

class QBoxLayout;
class QCheckBox;
class QStackedWidget;

namespace look {
class Announcer;
class Button;
class Field;
class Label;
class PlaceList;
class PopUp;
class Segments;
class Spinner;
} // namespace look

namespace app {

enum class StatusKind { Plain, Error };

// The one window: its controls, their texts and places. It owns them all and knows no rule; what is
// enabled, hidden or titled how is the controller's to set. Each control's object name is its name
// here. Main thread.
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit MainWindow(Mode startMode);

    // At its natural size in the middle of the screen, in front of other programs. Once, after the
    // menus were made: their bar comes on top of the content's size.
    void showCentred();
    // What lies below the menu bar: the content, and over it a dialog or an alert.
    QStackedWidget* pages() const { return pages_; }
    // `message` is shown literally; the alert does not block and needs no answer.
    void showAlert(const QString& title, const QString& message, const QString& button);

    // What the status line says, to the eye and to assistive technology.
    void setStatus(const QString& text, StatusKind kind);

    // What is chosen.
    Mode selectedMode() const;
    jobs::Travel selectedTravel() const;
    // The selected row of a list, or -1.
    int selectedResult() const;
    int selectedStation() const;
    // Into the search field, where the next letter replaces its text.
    void focusQuery();
    // Selects a station, in view; -1 selects none.
    void selectStation(int row);

    // The widget of that name.
    QWidget* widget(Control control) const { return widgets_[control]; }
    // What of them has the keyboard.
    std::optional<Control> focusedControl() const;

    // Asked before the window closes; it stays when the answer is no.
    std::function<bool()> mayClose = [] { return true; };

    look::Label* subtitle;
    look::Segments* mode;
    look::Field* query;
    look::Button* searchButton;
    look::Label* hint;
    look::PlaceList* table;
    QWidget* routePane;
    look::Label* stationHint;
    look::Button* addStationButton;
    look::PlaceList* stationTable;
    look::Button* removeStationButton;
    look::Button* moveStationUpButton;
    look::Button* moveStationDownButton;
    QWidget* mapOptions;
    look::PopUp* radius;
    look::PopUp* endpoint;
    look::Field* endpointField;
    QWidget* routeOptions;
    look::Segments* travel;
    QCheckBox* routeMapCheckbox;
    look::Field* routeEndpointField;
    look::Label* status;
    look::Spinner* spinner;
    look::Button* cancelButton;
    look::Button* languageButton;
    look::Button* finderButton;
    look::Button* downloadButton;
    look::Label* credit;

protected:
    void closeEvent(QCloseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    QWidget* makeHeader();
    QBoxLayout* makeSearchRow();
    QBoxLayout* makeLists();
    QWidget* makeRoutePane();
    QWidget* makeMapOptions();
    QWidget* makeRouteOptions();
    QBoxLayout* makeButtonRow();

    void focusResults();

    look::Announcer* announcer_; // owned by the window
    QStackedWidget* pages_;
    PerControl<QWidget*> widgets_;
};

} // namespace app
