// Changing the mode and the data service: what is kept, and what the window says.

#include "SearchWindowTest.h"

namespace {

using ModeTest = SearchWindowTest;

TEST_F(ModeTest, a_change_of_mode_keeps_everything_that_was_chosen) {
    importer->useStandIn();
    start();
    choose("radius", 2);
    choose("endpoint", 3);
    QTest::keyClicks(field("endpointField"), u"https://a.example"_s);
    searchResults(u"Berlin"_s);
    clickRow(4);
    click(button("downloadButton"));
    ASSERT_EVENTUALLY(!isBusy());
    const QStringList before = rows();
    const QString hint = text("hint");

    chooseMode(1);
    EXPECT_EQ(rows(), before);
    EXPECT_EQ(window()->selectedResult(), 4);
    EXPECT_TRUE(control("addStationButton")->isEnabled());
    EXPECT_TRUE(control("finderButton")->isVisible());
    EXPECT_EQ(field("query")->text(), u"Berlin"_s);
    click(segments("travel").at(2));
    QTest::keyClicks(field("routeEndpointField"), u"x"_s);
    const QString routing = field("routeEndpointField")->text();

    chooseMode(0);
    EXPECT_EQ(rows(), before);
    EXPECT_EQ(text("hint"), hint);
    EXPECT_EQ(window()->selectedResult(), 4);
    EXPECT_TRUE(control("downloadButton")->isEnabled());
    EXPECT_TRUE(control("finderButton")->isVisible());
    EXPECT_EQ(popUp("radius")->currentIndex(), 2);
    EXPECT_EQ(popUp("endpoint")->currentIndex(), 3);
    EXPECT_EQ(field("endpointField")->text(), u"https://a.example"_s);
    EXPECT_FALSE(field("endpointField")->isReadOnly());

    chooseMode(1);
    EXPECT_EQ(control<look::Segments>("travel")->selectedSegment(), 2);
    EXPECT_EQ(field("routeEndpointField")->text(), routing);
}

TEST_F(ModeTest, a_change_of_mode_replaces_the_status_even_an_error) {
    start();
    key(field("query"), Qt::Key_Return);
    ASSERT_TRUE(statusIsRed());
    chooseMode(1);
    EXPECT_EQ(status(), says::routeReady);
    EXPECT_FALSE(statusIsRed());
    EXPECT_EQ(toolTipAt(control("status"), {5, 5}), says::routeReady);
    key(field("query"), Qt::Key_Return);
    ASSERT_TRUE(statusIsRed());
    chooseMode(0);
    EXPECT_EQ(status(), says::ready);
    EXPECT_FALSE(statusIsRed());
}

TEST_F(ModeTest, a_click_on_the_mode_that_is_on_changes_nothing) {
    start();
    searchResults(u"Berlin"_s);
    chooseMode(0);
    EXPECT_EQ(status(), says::choose);
    EXPECT_TRUE(segments("mode").at(0)->isChecked());
}

TEST_F(ModeTest, each_data_service_brings_its_address) {
    start();
    const struct {
        int index;
        QString address;
        bool isEditable;
    } services[] = {
        {1, u"https://overpass-api.de/api/interpreter"_s, false},
        {3, QString(), true},
        {2, u"https://maps.mail.ru/osm/tools/overpass/api/interpreter"_s, false},
        {0, u"https://api.openstreetmap.org/api/0.6/map"_s, false},
    };
    for (const auto& [index, address, isEditable] : services) {
        choose("endpoint", index);
        EXPECT_EQ(field("endpointField")->text(), address);
        EXPECT_EQ(field("endpointField")->isReadOnly(), !isEditable);
        EXPECT_TRUE(field("endpointField")->isEnabled());
        EXPECT_EQ(status(), says::ready) << "the status stays";
    }
}

TEST_F(ModeTest, choosing_an_address_of_ones_own_discards_the_former_one) {
    start();
    choose("endpoint", 3);
    QTest::keyClicks(field("endpointField"), u"https://a.example"_s);
    choose("endpoint", 2);
    choose("endpoint", 3);
    EXPECT_EQ(field("endpointField")->text(), QString());
}

TEST_F(ModeTest, choosing_an_address_of_ones_own_again_leads_to_an_empty_field) {
    start();
    for (int i = 0; i < 2; ++i) {
        // From the open list, as a person does who chooses the entry that is there already.
        look::PopUp* services = popUp("endpoint");
        services->showPopup();
        QAbstractItemView* view = services->view();
        key(view, Qt::Key_End);
        key(view, Qt::Key_Return);
        ASSERT_EVENTUALLY(!view->isVisible());
        EXPECT_EQ(services->currentIndex(), 3);
        EXPECT_EQ(QApplication::focusWidget(), field("endpointField"));
        EXPECT_EQ(field("endpointField")->text(), QString());
        QTest::keyClicks(field("endpointField"), u"https://a.example"_s);
    }
    choose("endpoint", 1);
    EXPECT_EQ(QApplication::focusWidget(), popUp("endpoint")) << "there is nothing to fill";
}

TEST_F(ModeTest, a_data_service_can_be_chosen_while_a_search_runs) {
    start();
    geocoder.behave({{"hang"_L1, true}});
    search(u"Berlin"_s);
    choose("endpoint", 3);
    EXPECT_FALSE(field("endpointField")->isReadOnly());
    QTest::keyClicks(field("endpointField"), u"https://a.example"_s);
    choose("radius", 0);
    EXPECT_TRUE(isBusy());
    EXPECT_EQ(status(), says::searching);
    click(button("cancelButton"));
    EXPECT_EQ(field("endpointField")->text(), u"https://a.example"_s);
}

} // namespace
