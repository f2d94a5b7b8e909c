// What any window of this toolkit costs: as many controls as ours with as much text, in the
// toolkit's own style and font.
#include "FirstFrame.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMainWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QStringListModel>

using namespace Qt::StringLiterals;

namespace {

template<typename Control>
void add(QBoxLayout* column, const QStringList& texts) {
    auto* row = new QHBoxLayout;
    for (const QString& text : texts)
        row->addWidget(new Control(text));
    column->addLayout(row);
}

} // namespace

int main(int argc, char* argv[]) {
    QApplication application(argc, argv);
    FirstFrame::watch();
    QMainWindow window;
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    add<QLabel>(column, {u"Norvaxel 3D"_s, u"Ortsdaten mit Gebäuden und Gelände"_s});
    add<QLabel>(column, {u"Suchergebnisse · wähle einen Ort aus"_s, u"Stationen · 0 / 32"_s});
    add<QLabel>(column, {u"Umkreis"_s, u"Datendienst"_s, u"Reiseart"_s, u"Routingdienst"_s});
    add<QLabel>(column, {u"Gib einen Ort ein und starte die Suche."_s,
                         u"Photon · OpenStreetMap-Daten (ODbL) · Terrain Tiles (AWS)"_s});
    add<QRadioButton>(column, {u"Ortskarte"_s, u"Route"_s, u"Auto"_s, u"Zug"_s, u"Flug"_s});
    add<QLineEdit>(column, {u""_s, u"https://api.example/map"_s, u"https://api.example/route"_s});
    add<QPushButton>(column, {u"Suchen"_s, u"Abbrechen"_s, u"Sprache"_s, u"Ordner zeigen"_s,
                              u"Ortsdaten laden"_s});
    add<QPushButton>(column, {u"Als Station hinzufügen"_s, u"Entfernen"_s, u"Hoch"_s, u"Runter"_s});
    add<QCheckBox>(column, {u"3D-Paket: Gebäude, Straßen, Gelände"_s});
    for (int i = 0; i < 2; ++i) {
        auto* choices = new QComboBox;
        choices->addItems({u"One"_s, u"Two"_s, u"Three"_s, u"Four"_s});
        column->addWidget(choices);
    }
    QStringListModel model;
    for (int i = 0; i < 2; ++i) {
        auto* list = new QListView;
        list->setModel(&model);
        column->addWidget(list);
    }
    for (const QString& title : {u"Program"_s, u"Edit"_s, u"Window"_s}) {
        QMenu* menu = window.menuBar()->addMenu(title);
        for (int i = 0; i < 3; ++i)
            menu->addAction(u"Item %1"_s.arg(i));
    }
    window.setCentralWidget(content);
    window.resize(820, 784);
    window.show();
    return QApplication::exec();
}
