#include "app/NXImportApp.h"

#include "app/LanguageDialog.h"
#include "app/Services.h"
#include "localization/Language.h"
#include "localization/NXLocal.h"
#include "look/controls/Button.h"
#include "look/controls/Field.h"
#include "look/controls/PlaceList.h"
#include "look/controls/PopUp.h"
#include "look/controls/Segments.h"
#include "look/controls/Spinner.h"
#include "look/style/Colours.h"
#include "look/text/Label.h"
#include "platform/QuitSignals.h"

#include <QApplication>
#include <QCheckBox>
#include <QPointer>
#include <QShortcut>

#include <array>

using namespace Qt::StringLiterals;

namespace app {

using localization::filled;
using localization::NXLocal;

// The lists draw what the models tell.
static_assert(look::DetailRole == look::PlaceListModel::DetailRole);

NXImportApp::NXImportApp(Mode startMode) : startMode_(startMode) {}

NXImportApp::~NXImportApp() = default;

void NXImportApp::applicationDidFinishLaunching() {
    nxui::persistInitialLanguage(nxui::Product::ThreeD);
    const bool readsFromRight = nxui::currentLanguage(nxui::Product::ThreeD) == "ar";
    QApplication::setLayoutDirection(readsFromRight ? Qt::RightToLeft : Qt::LeftToRight);
    makeWindow();
    makeMenu();
    window_->mayClose = [this] { return applicationShouldTerminate(); };
    connect(qApp, &QCoreApplication::aboutToQuit, this, &NXImportApp::applicationWillTerminate);
    platform::takeQuitSignals([app = QPointer(this)] {
        if (app)
            app->window_->close();
    });
    window_->showCentred();
}

void NXImportApp::makeWindow() {
    window_ = std::make_unique<MainWindow>(startMode_ == Mode::Route);
    window_->table->setModel(&resultModel_);
    window_->stationTable->setModel(&stationModel_);
    endpointChanged();
    connectControls();
    modeChanged();
    window_->query->setFocus();
}

void NXImportApp::connectControls() {
    MainWindow* w = window_.get();
    connect(w->mode, &look::Segments::selectionChanged, this, &NXImportApp::modeChanged);
    connect(w->query, &QLineEdit::textChanged, this, &NXImportApp::controlTextDidChange);
    connect(w->query, &QLineEdit::returnPressed, this, &NXImportApp::search);
    new QShortcut(Qt::Key_Down, w->query, this, &NXImportApp::focusResults, Qt::WidgetShortcut);
    connect(w->searchButton, &QPushButton::clicked, this, &NXImportApp::search);
    connect(w->endpoint, &QComboBox::currentIndexChanged, this, &NXImportApp::endpointChanged);
    connect(w->travel, &look::Segments::selectionChanged, this, &NXImportApp::routeMapChanged);
    connect(w->routeMapCheckbox, &QCheckBox::toggled, this, &NXImportApp::routeMapChanged);
    connect(w->table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &NXImportApp::tableSelectionDidChange);
    connect(w->stationTable->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &NXImportApp::updateControls);
    connect(w->downloadButton, &QPushButton::clicked, this, &NXImportApp::download);
    connect(w->table, &QAbstractItemView::activated, this, &NXImportApp::activateResult);
    connect(w->addStationButton, &QPushButton::clicked, this, &NXImportApp::addStation);
    connect(w->removeStationButton, &QPushButton::clicked, this, &NXImportApp::removeStation);
    connect(w->moveStationUpButton, &QPushButton::clicked, this, [this] { moveStation(-1); });
    connect(w->moveStationDownButton, &QPushButton::clicked, this, [this] { moveStation(+1); });
    const auto stationKey = [this, w](const QKeySequence& key, auto act) {
        new QShortcut(key, w->stationTable, this, act, Qt::WidgetShortcut);
    };
    stationKey(Qt::Key_Delete, [this] { removeStation(); });
    stationKey(Qt::ALT | Qt::Key_Up, [this] { moveStation(-1); });
    stationKey(Qt::ALT | Qt::Key_Down, [this] { moveStation(+1); });
    connect(w->languageButton, &QPushButton::clicked, this, &NXImportApp::chooseLanguage);
    connect(w->finderButton, &QPushButton::clicked, this, &NXImportApp::showInFinder);
    connect(w->cancelButton, &QPushButton::clicked, this, &NXImportApp::cancel);
}

bool NXImportApp::routeMode() const {
    return window_->mode->selectedSegment() == 1;
}

void NXImportApp::setStatus(const QString& text, StatusKind kind) {
    // Typing sets the same hint with every letter. An error is news each time.
    if (text != window_->status->text() || kind == StatusKind::Error)
        window_->announce(text, kind);
    window_->status->setText(text);
    window_->status->setToolTip(text);
    window_->status->setColour(kind == StatusKind::Error ? look::colours::red
                                                         : look::colours::secondary);
}

void NXImportApp::modeChanged() {
    const bool isRoute = routeMode();
    leaveHalf(isRoute);
    window_->showMode(isRoute);
    window_->subtitle->setText(
        isRoute ? NXLocal(u"Deine Stationen. Straßen, Gebäude und Gelände entlang der Strecke."_s)
                : NXLocal(u"Ortsdaten mit Gebäuden und Gelände für Norvaxel 3D"_s));
    updateCredits();
    setStatus(
        isRoute
            ? NXLocal(
                  u"Stadt oder Adresse suchen, Treffer auswählen und als Station hinzufügen. Mindestens zwei Stationen sind nötig."_s)
            : NXLocal(u"Gib einen Ort ein und starte die Suche."_s),
        StatusKind::Plain);
    updateControls();
}

void NXImportApp::updateCredits() {
    window_->credit->setText(
        routeMode()
            ? NXLocal(
                  u"Photon · OSRM · OpenFreeMap / OpenMapTiles · Terrain Tiles (AWS) · OpenStreetMap-Daten (ODbL)\nInternet erforderlich · lange Strecken laden einige Minuten · das Norvaxel-3D-Paket rendert offline."_s)
            : NXLocal(
                  u"Photon · OpenStreetMap-Daten (ODbL) · Terrain Tiles (AWS)\nEinmal laden, danach offline in Norvaxel 3D nutzen. Der Umkreis begrenzt den Ausschnitt."_s));
}

void NXImportApp::routeMapChanged() {
    updateCredits();
}

void NXImportApp::endpointChanged() {
    const int index = window_->endpoint->currentIndex();
    static constexpr std::array addresses{services::openStreetMap, services::overpass,
                                          services::overpassAlternative};
    const bool isFixed = index >= 0 && index < customEndpoint;
    window_->endpointField->setText(isFixed ? QString(addresses.at(size_t(index))) : QString());
    window_->endpointField->setReadOnly(isFixed);
}

void NXImportApp::tableSelectionDidChange() {
    updateControls();
    if (busy() || window_->selectedResult() < 0)
        return;
    setStatus(routeMode()
                  ? NXLocal(u"Treffer ausgewählt. Füge ihn deiner Route als Station hinzu."_s)
                  : NXLocal(u"Ort ausgewählt. Umkreis festlegen und Ortsdaten laden."_s),
              StatusKind::Plain);
}

void NXImportApp::updateControls() {
    MainWindow& w = *window_;
    const ControlStates states = controlStates({
        .isRouteMode = routeMode(),
        .searching = searching_,
        .importing = importing_,
        .results = results_.size(),
        .selectedResult = w.selectedResult(),
        .stations = stations_.size(),
        .selectedStation = w.selectedStation(),
        .endpointIndex = w.endpoint->currentIndex(),
        .hasCompleted = completed_.has_value(),
    });
    const std::pair<QWidget*, bool> usable[] = {
        {w.mode, states.mode},
        {w.languageButton, states.languageButton},
        {w.query, states.query},
        {w.searchButton, states.searchButton},
        {w.radius, states.radius},
        {w.endpoint, states.endpoint},
        {w.endpointField, states.endpointField},
        {w.table, states.table},
        {w.stationTable, states.stationTable},
        {w.routeEndpointField, states.routeEndpointField},
        {w.routeMapCheckbox, states.routeMapCheckbox},
        {w.travel, states.travel},
        {w.addStationButton, states.addStationButton},
        {w.removeStationButton, states.removeStationButton},
        {w.moveStationUpButton, states.moveStationUpButton},
        {w.moveStationDownButton, states.moveStationDownButton},
        {w.downloadButton, states.downloadButton},
        {w.cancelButton, !states.cancelHidden},
        {w.finderButton, !states.finderHidden},
    };
    setUsable(usable);
    w.endpointField->setReadOnly(!states.endpointFieldEditable);
    w.downloadButton->setTitle(NXLocal(states.downloadTitle));
    const QString counter = filled(NXLocal(u"Stationen · %lu / 32"_s), {states.stationCount});
    w.stationHint->setText(counter);
    if (w.stationTable->accessibleName() != counter)
        w.stationTable->setAccessibleName(counter);
    w.spinner->setTurning(states.spinning);
    w.status->setBusy(states.spinning);
}

void NXImportApp::chooseLanguage() {
    if (busy())
        return;
    auto* dialog = new LanguageDialog(window_.get());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this,
            [this, dialog] { saveLanguage(dialog->chosenLanguage()); });
    dialog->open();
}

void NXImportApp::saveLanguage(const std::string& language) {
    // The window keeps its language until it is opened again.
    if (!nxui::saveLanguage(nxui::Product::ThreeD, language, nxui::homeDirectory())) {
        setStatus(NXLocal(u"Die Sprache konnte nicht lokal gespeichert werden."_s),
                  StatusKind::Error);
        return;
    }
    look::Panel* confirmation = makeLanguageConfirmation(language, window_.get());
    confirmation->setAttribute(Qt::WA_DeleteOnClose);
    confirmation->open();
}

} // namespace app
