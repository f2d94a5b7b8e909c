#include "RouteWindowTest.h"

using namespace Qt::StringLiterals;
using namespace app;

void RouteWindowTest::SetUp() {
    WindowTest::SetUp();
    Geocoder::shared().reset();
}

void RouteWindowTest::offer(const QList<QJsonObject>& places) {
    Geocoder::shared().behave(withBody(answer(places)));
    searchResults(u"irgendwo"_s);
}

void RouteWindowTest::offer(const QStringList& names) {
    QList<QJsonObject> places;
    for (const QString& name : names)
        places += feature(name);
    offer(places);
}

void RouteWindowTest::startWithResults(const QStringList& names) {
    start(Mode::Route);
    offer(names);
    clickRow(0);
    ASSERT_EQ(status(), says::resultChosen);
}

void RouteWindowTest::startWithStations(const QStringList& names) {
    start(Mode::Route);
    for (const QString& name : names) {
        offer({name});
        addResult(0);
    }
    ASSERT_EQ(stations(), numbered(names));
}

void RouteWindowTest::addResult(int row) {
    clickRow(row);
    click(button("addStationButton"));
}

void RouteWindowTest::clickStation(int row) {
    look::PlaceList* table = list("stationTable");
    const QRect area = table->visualRect(table->model()->index(row, 0));
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, area.center());
}

void RouteWindowTest::stationKey(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    list("stationTable")->setFocus();
    this->key(list("stationTable"), key, modifiers);
}

QStringList RouteWindowTest::stations() const {
    QStringList texts;
    const QAbstractItemModel* model = list("stationTable")->model();
    for (int row = 0; row < model->rowCount(); ++row)
        texts += model->index(row, 0).data().toString();
    return texts;
}

bool RouteWindowTest::stationIsInView(int row) const {
    const look::PlaceList* table = list("stationTable");
    return table->viewport()->rect().contains(table->visualRect(table->model()->index(row, 0)));
}

QStringList RouteWindowTest::numbered(const QStringList& names) {
    QStringList texts;
    for (const QString& name : names)
        texts += QString::number(texts.size() + 1) + u" · "_s + name;
    return texts;
}

QByteArray waitingTool(const std::filesystem::path& gate) {
    const QByteArray name = '\'' + QByteArray::fromStdString(gate.string()) + '\'';
    return "gate=" + name +
           "\n"
           "trap 'printf t >> \"$gate.terms\"' TERM\n"
           ": > \"$gate.started\"\n"
           "while ! [ -e \"$gate\" ]; do sleep 0.01; done";
}
