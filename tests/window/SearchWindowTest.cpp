#include "SearchWindowTest.h"

void SearchWindowTest::SetUp() {
    WindowTest::SetUp();
    geocoder.reset();
}

void SearchWindowTest::offer(const QList<QJsonObject>& places) {
    geocoder.behave(withBody(answer(places)));
    searchResults(u"irgendwo"_s);
}

void SearchWindowTest::offer(const QStringList& names) {
    QList<QJsonObject> places;
    for (const QString& name : names)
        places += feature(name);
    offer(places);
}

void SearchWindowTest::startWithResults(const QStringList& names) {
    start(Mode::Route);
    offer(names);
    clickRow(0);
    ASSERT_EQ(status(), says::resultChosen);
}

void SearchWindowTest::startWithStations(const QStringList& names) {
    start(Mode::Route);
    for (const QString& name : names) {
        offer({name});
        addResult(0);
    }
    ASSERT_EQ(stations(), numbered(names));
}

void SearchWindowTest::addResult(int row) {
    clickRow(row);
    click(button("addStationButton"));
}

void SearchWindowTest::findPlaces(Mode mode) {
    searchResults(u"Berlin"_s);
    clickRow(0);
    for (int row = 0; mode == Mode::Route && row < 3; ++row)
        addResult(row);
    ASSERT_TRUE(button("downloadButton")->isEnabled());
}

void SearchWindowTest::doubleClickRow(int row) {
    clickRow(row);
    look::PlaceList* table = list("table");
    QTest::mouseDClick(table->viewport(), Qt::LeftButton, {},
                       table->visualRect(table->model()->index(row, 0)).center());
}

void SearchWindowTest::clickStation(int row) {
    clickRow(list("stationTable"), row);
}

void SearchWindowTest::stationKey(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    list("stationTable")->setFocus();
    this->key(list("stationTable"), key, modifiers);
}

QStringList SearchWindowTest::stations() const {
    QStringList texts;
    const QAbstractItemModel* model = list("stationTable")->model();
    for (int row = 0; row < model->rowCount(); ++row)
        texts += model->index(row, 0).data().toString();
    return texts;
}

bool SearchWindowTest::stationIsInView(int row) const {
    const look::PlaceList* table = list("stationTable");
    return table->viewport()->rect().contains(table->visualRect(table->model()->index(row, 0)));
}

QStringList SearchWindowTest::numbered(const QStringList& names) {
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
