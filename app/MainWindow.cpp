#include "app/MainWindow.h"

#include "app/Services.h"
#include "localization/NXLocal.h"
#include "look/accessibility/Accessibility.h"
#include "look/controls/Button.h"
#include "look/controls/Field.h"
#include "look/controls/Glyphs.h"
#include "look/controls/Panel.h"
#include "look/controls/PlaceList.h"
#include "look/controls/PopUp.h"
#include "look/controls/Segments.h"
#include "look/controls/Spinner.h"
#include "look/style/Colours.h"
#include "look/text/Fonts.h"
#include "look/text/Label.h"
#include "look/text/LiteralText.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QClipboard>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>
#include <QShortcut>
#include <QStackedWidget>
#include <QTimer>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace app {

using localization::NXLocal;

using look::Button;
using look::ButtonKind;
using look::Field;
using look::FieldKind;
using look::Label;

namespace {

constexpr int spacing = 10;
constexpr int listsHeight = 250;

// A control under the name by which tests and assistive technology find it.
template<typename Control>
Control* named(const char* name, Control* control) {
    control->setObjectName(QLatin1StringView(name));
    return control;
}

// The controls and their texts.
class Content : public QWidget {
public:
    QSize sizeHint() const override { return {820, 760}; }
    // Otherwise what holds it would ask for as little height as its texts need.
    bool hasHeightForWidth() const override { return false; }

protected:
    // The icon is no part of the start: it comes when the first picture has been there for a while.
    void paintEvent(QPaintEvent* /*event*/) override {
        if (!std::exchange(isPainted_, true))
            QTimer::singleShot(std::chrono::seconds(1), window(),
                               [w = window()] { w->setWindowIcon(look::programIcon()); });
    }

private:
    bool isPainted_ = false;
};

Label* makeLabel(int pixels, QRgb colour, const QString& text, int lines = 1) {
    auto* label = new Label(pixels, colour);
    label->setMaximumLines(lines);
    label->setText(text);
    return label;
}

template<typename Layout>
Layout* row(QWidget* parent = nullptr, int gap = spacing) {
    auto* layout = new Layout(parent);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(gap);
    return layout;
}

int selectedRow(const QAbstractItemView& list) {
    const QModelIndexList rows = list.selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

Field* makeAddressField(FieldKind kind, const QString& spokenName, const QString& example) {
    auto* field = new Field(kind);
    field->setExample(example);
    field->setAccessibleName(spokenName);
    return field;
}

} // namespace

MainWindow::MainWindow(Mode startMode)
    : announcer_(new look::Announcer(this)), pages_(new QStackedWidget) {
    setWindowTitle(NXLocal(u"Norvaxel 3D · Orte und Routen"_s));
    auto* content = new Content;
    content->setMinimumSize(780, 730);
    pages_->addWidget(content); // empty still: what it holds is laid out once, at the end
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(22, 16, 22, 18);
    column->setSpacing(spacing);

    column->addWidget(makeHeader(), 0, Qt::AlignLeading);
    mode = named("mode", new look::Segments(look::SegmentsKind::Mode,
                                            {NXLocal(u"Ortskarte"_s), NXLocal(u"Route"_s)}));
    mode->setSelectedSegment(startMode == Mode::Route ? 1 : 0);
    column->addWidget(mode, 0, Qt::AlignLeading);
    column->addLayout(makeSearchRow());
    hint = named("hint", makeLabel(12, look::colours::secondary,
                                   NXLocal(u"Suchergebnisse · wähle einen Ort aus"_s)));
    column->addWidget(hint);
    column->addLayout(makeLists());
    mapOptions = named("mapOptions", makeMapOptions());
    column->addWidget(mapOptions);
    endpointField =
        named("endpointField", makeAddressField(FieldKind::Service, NXLocal(u"Datendienst"_s),
                                                services::dataExample));
    column->addWidget(endpointField);
    routeOptions = named("routeOptions", makeRouteOptions());
    column->addWidget(routeOptions);
    status = named("status", makeLabel(12, look::colours::secondary,
                                       NXLocal(u"Gib einen Ort ein und starte die Suche."_s), 3));
    status->setMinimumHeight(48);
    column->addWidget(status);
    column->addLayout(makeButtonRow());
    credit = named("credit", makeLabel(11, look::colours::tertiary, {}, 3));
    column->addWidget(credit);
    column->addStretch();
    setCentralWidget(pages_);
    widgets_ = {{mode,
                 query,
                 searchButton,
                 table,
                 routePane,
                 addStationButton,
                 stationTable,
                 removeStationButton,
                 moveStationUpButton,
                 moveStationDownButton,
                 mapOptions,
                 radius,
                 endpoint,
                 endpointField,
                 routeOptions,
                 travel,
                 routeMapCheckbox,
                 routeEndpointField,
                 cancelButton,
                 languageButton,
                 finderButton,
                 downloadButton}};
}

void MainWindow::showCentred() {
    resize(sizeHint());
    const QRect available = screen()->availableGeometry();
    const QPoint centred = available.center() - rect().center();
    // A screen that is too small for the window cuts its end, never its title bar.
    move(qMax(available.left(), centred.x()), qMax(available.top(), centred.y()));
    show();
    raise();
    activateWindow();
}

QWidget* MainWindow::makeHeader() {
    auto* header = new QWidget;
    auto* line = row<QHBoxLayout>(header);
    auto* glyph = new look::BuildingGlyph(34);
    glyph->setAccessibleName(NXLocal(u"Norvaxel 3D"_s));
    line->addWidget(glyph);
    auto* texts = row<QVBoxLayout>(nullptr, 2);
    auto* title = makeLabel(26, look::colours::label, NXLocal(u"Norvaxel 3D"_s));
    title->setFont(look::titleFont());
    texts->addWidget(title);
    subtitle =
        named("subtitle", makeLabel(13, look::colours::secondary,
                                    NXLocal(u"Orte und Routen mit Gebäuden und Gelände."_s)));
    texts->addWidget(subtitle);
    line->addLayout(texts);
    return header;
}

QBoxLayout* MainWindow::makeSearchRow() {
    const QString prompt = NXLocal(u"Stadt, Ort oder Adresse weltweit"_s);
    query = named("query", new Field(FieldKind::Search));
    query->setExample(prompt);
    query->setAccessibleName(prompt);
    searchButton = named("searchButton", new Button(ButtonKind::Push, NXLocal(u"Suchen"_s)));
    searchButton->setGlyph(look::ButtonGlyph::Magnifier);
    searchButton->setFixedWidth(108);
    new QShortcut(Qt::Key_Down, query, this, &MainWindow::focusResults, Qt::WidgetShortcut);
    auto* line = row<QHBoxLayout>();
    line->addWidget(query);
    line->addWidget(searchButton);
    return line;
}

QBoxLayout* MainWindow::makeLists() {
    table = named("table", new look::PlaceList);
    table->setAccessibleName(NXLocal(u"Suchergebnisse · wähle einen Ort aus"_s));
    named("placeholder", table->emptyLabel());
    table->setEmptyText(NXLocal(u"Ergebnisse erscheinen nach der Suche"_s));
    routePane = named("routePane", makeRoutePane());
    auto* line = row<QHBoxLayout>();
    line->addWidget(table, 1);
    line->addWidget(routePane, 1);
    table->setFixedHeight(listsHeight);
    routePane->setFixedHeight(listsHeight);
    return line;
}

QWidget* MainWindow::makeRoutePane() {
    stationHint = named("stationHint",
                        makeLabel(12, look::colours::secondary, NXLocal(u"Stationen · 0 / 32"_s)));
    addStationButton = named("addStationButton",
                             new Button(ButtonKind::Small, NXLocal(u"Als Station hinzufügen"_s)));
    stationTable = named("stationTable", new look::PlaceList);
    removeStationButton =
        named("removeStationButton", new Button(ButtonKind::Push, NXLocal(u"Entfernen"_s)));
    moveStationUpButton =
        named("moveStationUpButton", new Button(ButtonKind::Push, NXLocal(u"Hoch"_s)));
    moveStationDownButton =
        named("moveStationDownButton", new Button(ButtonKind::Push, NXLocal(u"Runter"_s)));

    constexpr int inner = 6;
    auto* top = row<QHBoxLayout>(nullptr, inner);
    top->addWidget(stationHint);
    top->addStretch();
    top->addWidget(addStationButton);
    top->addStrut(32); // the small button sits in the middle of a full row
    auto* buttons = row<QHBoxLayout>(nullptr, inner);
    for (Button* button : {removeStationButton, moveStationUpButton, moveStationDownButton})
        buttons->addWidget(button);
    buttons->addStretch();
    auto* pane = new QWidget;
    auto* column = row<QVBoxLayout>(pane, inner);
    column->addLayout(top);
    column->addWidget(stationTable, 1);
    column->addLayout(buttons);
    return pane;
}

QWidget* MainWindow::makeMapOptions() {
    radius = named("radius", new look::PopUp(102));
    radius->addItems(
        {NXLocal(u"400 m"_s), NXLocal(u"800 m"_s), NXLocal(u"1,2 km"_s), NXLocal(u"2 km"_s)});
    radius->setCurrentIndex(1);
    endpoint = named("endpoint", new look::PopUp(218));
    endpoint->addItems({NXLocal(u"OpenStreetMap direkt"_s), NXLocal(u"Overpass · Standard"_s),
                        NXLocal(u"Overpass · Alternative"_s), NXLocal(u"Eigene HTTPS-Adresse"_s)});
    Label* radiusCaption = makeLabel(12, look::colours::secondary, NXLocal(u"Umkreis"_s));
    radiusCaption->setBuddy(radius);
    Label* endpointCaption = makeLabel(12, look::colours::secondary, NXLocal(u"Datendienst"_s));
    endpointCaption->setBuddy(endpoint);

    auto* options = new QWidget;
    auto* line = row<QHBoxLayout>(options);
    line->addWidget(radiusCaption);
    line->addWidget(radius);
    line->addStretch();
    line->addWidget(endpointCaption);
    line->addWidget(endpoint);
    return options;
}

QWidget* MainWindow::makeRouteOptions() {
    // The one caption that stays German in every language.
    const QString travelText = u"Reiseart"_s;
    Label* travelCaption = makeLabel(11, look::colours::secondary, travelText);
    travel = named("travel",
                   new look::Segments(look::SegmentsKind::Travel,
                                      {NXLocal(u"Auto"_s), NXLocal(u"Zug"_s), NXLocal(u"Flug"_s)}));
    travel->setAccessibleName(travelText);
    travel->setSelectedSegment(0);
    travel->setToolTip(NXLocal(
        u"Auto: Straßenroute über den Routingdienst. Zug: entlang echter Gleise aus OpenStreetMap. Flug: Bogen in der Höhe zwischen den Stationen. Gebäude und Gelände kommen immer mit."_s));

    const QString routingText = NXLocal(u"Routingdienst · eigene HTTPS-Adresse optional"_s);
    Label* routingCaption = makeLabel(11, look::colours::secondary, routingText);
    // A box for a route with or without its package: what it would say stays in the catalogue.
    // Every route of this program brings one, and the box says so in the end.
    routeMapCheckbox =
        named("routeMapCheckbox", new QCheckBox(NXLocal(u"Straßenkarte mitladen"_s)));
    routeMapCheckbox->setFont(look::font(12));
    routeMapCheckbox->setToolTip(NXLocal(
        u"Mit Route berechnen auch die passende OpenFreeMap-Straßenkarte herunterladen. Benötigt Internet; danach ist die gespeicherte Karte offline nutzbar."_s));
    routeMapCheckbox->setChecked(true);
    look::setLiteralText(routeMapCheckbox, NXLocal(u"3D-Paket: Gebäude, Straßen, Gelände"_s));
    routeMapCheckbox->setToolTip(NXLocal(
        u"Norvaxel 3D lädt zu jeder Route Gebäude und Straßen entlang der ganzen Strecke sowie das Gelände. Benötigt Internet; danach rendert das Paket offline."_s));
    routeEndpointField =
        named("routeEndpointField",
              makeAddressField(FieldKind::Routing, routingText, services::routingExample));
    routeEndpointField->setText(services::routing);
    routeEndpointField->setToolTip(NXLocal(
        u"Optional: eigener kompatibler HTTPS-Routingdienst ohne Zugangsdaten. Die Standardadresse verwendet öffentliche OSM-Daten."_s));

    auto* line = row<QHBoxLayout>();
    // Where the line runs out of room, the routing caption is the one that is elided.
    travelCaption->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    line->addWidget(travelCaption);
    line->addWidget(travel);
    line->addWidget(routingCaption);
    line->addStretch();
    line->addWidget(routeMapCheckbox);
    auto* options = new QWidget;
    auto* column = row<QVBoxLayout>(options, 4);
    column->addLayout(line);
    column->addWidget(routeEndpointField);
    return options;
}

QBoxLayout* MainWindow::makeButtonRow() {
    spinner = named("spinner", new look::Spinner);
    cancelButton = named("cancelButton", new Button(ButtonKind::Push, NXLocal(u"Abbrechen"_s)));
    // Acts only while the button is shown.
    cancelButton->setShortcut(Qt::Key_Escape);
    languageButton = named("languageButton", new Button(ButtonKind::Push, NXLocal(u"Sprache"_s)));
    languageButton->setToolTip(NXLocal(u"Sprache auswählen und lokal speichern"_s));
    finderButton = named("finderButton", new Button(ButtonKind::Push, NXLocal(u"Ordner zeigen"_s)));
    downloadButton =
        named("downloadButton", new Button(ButtonKind::Prominent, NXLocal(u"Ortsdaten laden"_s)));
    auto* line = row<QHBoxLayout>();
    line->addWidget(spinner);
    line->addWidget(cancelButton);
    line->addWidget(languageButton);
    line->addStretch();
    line->addWidget(finderButton);
    line->addWidget(downloadButton);
    return line;
}

std::optional<Control> MainWindow::focusedControl() const {
    // What lies in a control, such as a segment, counts as the control.
    for (const QWidget* each = focusWidget(); each != nullptr; each = each->parentWidget()) {
        const auto found = std::ranges::find(widgets_.values, each);
        if (found != widgets_.values.end())
            return Control(found - widgets_.values.begin());
    }
    return std::nullopt;
}

void MainWindow::showAlert(const QString& title, const QString& message, const QString& button) {
    auto* alert = new look::Panel(look::PanelKind::Alert, title, message, pages_);
    alert->setButtons(button);
    alert->open();
    // A screen reader reads the alert out, where the keyboard is in this window.
    if (isActiveWindow())
        announcer_->say({}, look::Urgency::Polite);
}

// What the window says last can be copied: the text of an open panel, or else the status. The menu
// key leads to it from every control that has no menu of its own, so that the text, which can do
// nothing else, is no stop on the way of Tab.
void MainWindow::contextMenuEvent(QContextMenuEvent* event) {
    const auto* panel = pages_->currentWidget()->findChild<look::Panel*>();
    const Label* said = panel ? panel->information() : status;
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    event->setAccepted(isByKey || said->rect().contains(said->mapFromGlobal(event->globalPos())));
    if (!event->isAccepted())
        return;
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(look::literal(NXLocal(u"Kopieren"_s)), said,
                    [said] { QGuiApplication::clipboard()->setText(said->text()); });
    menu->popup(isByKey ? said->mapToGlobal(said->rect().center()) : event->globalPos());
}

void MainWindow::setStatus(const QString& text, StatusKind kind) {
    const bool isError = kind == StatusKind::Error;
    // Typing sets the same hint with every letter. An error is news each time.
    if (text != status->text() || isError)
        announcer_->say(text, isError ? look::Urgency::Assertive : look::Urgency::Polite);
    status->setText(text);
    status->setToolTip(text);
    status->setColour(isError ? look::colours::red : look::colours::secondary);
}

Mode MainWindow::selectedMode() const {
    return mode->selectedSegment() == 1 ? Mode::Route : Mode::Place;
}

jobs::Travel MainWindow::selectedTravel() const {
    return static_cast<jobs::Travel>(travel->selectedSegment());
}

int MainWindow::selectedResult() const {
    return selectedRow(*table);
}

int MainWindow::selectedStation() const {
    return selectedRow(*stationTable);
}

// Down in the search field goes on into the list of what it has found.
void MainWindow::focusResults() {
    if (table->model()->rowCount() == 0)
        return;
    table->setFocus(Qt::TabFocusReason);
    if (selectedResult() < 0)
        table->setCurrentIndex(table->model()->index(0, 0));
}

void MainWindow::focusQuery() {
    query->setFocus();
    query->selectAll();
}

void MainWindow::selectStation(int row) {
    const QModelIndex index = stationTable->model()->index(row, 0);
    stationTable->setCurrentIndex(index);
    stationTable->scrollTo(index);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    event->setAccepted(mayClose());
}

} // namespace app
