// The list of results: what is chosen, and what the window says of it.

#include "SearchWindowTest.h"

const ProgramLanguage programLanguage{"de", ""};

namespace {

class ResultsTest : public SearchWindowTest {
protected:
    look::PlaceListModel* model() const {
        return qobject_cast<look::PlaceListModel*>(list("table")->model());
    }
};

TEST_F(ResultsTest, choosing_a_place_says_what_comes_next) {
    start();
    searchResults(u"Berlin"_s);
    clickRow(1);
    EXPECT_EQ(window()->selectedResult(), 1);
    EXPECT_EQ(status(), says::chosen);
    EXPECT_FALSE(statusIsRed());
    EXPECT_TRUE(control("downloadButton")->isEnabled());
    clickRow(2);
    EXPECT_EQ(list("table")->selectionModel()->selectedRows().size(), 1) << "one at a time";
    EXPECT_EQ(window()->selectedResult(), 2);
}

TEST_F(ResultsTest, choosing_a_result_in_route_mode_says_what_comes_next) {
    start(Mode::Route);
    searchResults(u"Berlin"_s);
    clickRow(0);
    EXPECT_EQ(status(), u"Treffer ausgewählt. Füge ihn deiner Route als Station hinzu."_s);
    EXPECT_TRUE(control("addStationButton")->isEnabled());
    EXPECT_FALSE(control("downloadButton")->isEnabled()) << "a route needs two stations";
}

TEST_F(ResultsTest, choosing_after_an_error_makes_the_status_plain) {
    start();
    searchResults(u"Berlin"_s);
    {
        const QSignalBlocker unseen(field("query"));
        field("query")->clear();
    }
    key(field("query"), Qt::Key_Return);
    EXPECT_TRUE(statusIsRed());
    clickRow(0);
    EXPECT_EQ(status(), says::chosen);
    EXPECT_FALSE(statusIsRed());
}

TEST_F(ResultsTest, deselecting_leaves_the_status_as_it_was) {
    start();
    searchResults(u"Berlin"_s);
    clickRow(1);
    click(button("downloadButton")); // there is no importer
    const QString said = status();
    ASSERT_NE(said, says::chosen);
    clickRow(1, Qt::ControlModifier);
    EXPECT_EQ(window()->selectedResult(), -1);
    EXPECT_EQ(status(), said);
    EXPECT_FALSE(control("downloadButton")->isEnabled());
}

// While a new search runs the list is empty; only a row that comes from elsewhere can be chosen.
TEST_F(ResultsTest, choosing_while_a_search_runs_says_nothing) {
    start();
    geocoder.behave({{"hang"_L1, true}});
    search(u"Berlin"_s);
    model()->setRows({{u"Ulm"_s, QString()}});
    clickRow(0);
    EXPECT_EQ(window()->selectedResult(), 0);
    EXPECT_EQ(status(), says::searching);
    EXPECT_FALSE(control("downloadButton")->isEnabled());
    click(button("cancelButton"));
}

TEST_F(ResultsTest, choosing_while_an_import_runs_says_nothing) {
    importer->useStandIn("60");
    start();
    searchResults(u"Berlin"_s);
    clickRow(0);
    click(button("downloadButton"));
    ASSERT_EQ(status(), says::loading);
    clickRow(1);
    EXPECT_EQ(window()->selectedResult(), 0) << "the list cannot be used";
    list("table")->setCurrentIndex(model()->index(2, 0));
    EXPECT_EQ(status(), says::loading);
    click(button("cancelButton"));
    EXPECT_EVENTUALLY(!isBusy());
}

TEST_F(ResultsTest, a_row_that_is_gone_is_empty) {
    start();
    searchResults(u"Berlin"_s);
    const QModelIndex last = model()->index(7, 0);
    EXPECT_TRUE(last.data().isValid());
    field("query")->clear();
    for (const int role : {int(Qt::DisplayRole), look::PlaceListModel::detailRole,
                           int(Qt::ToolTipRole), int(Qt::AccessibleTextRole)})
        EXPECT_FALSE(model()->data(last, role).isValid());
}

TEST_F(ResultsTest, new_results_are_not_chosen_and_start_at_the_top) {
    start();
    searchResults(u"Berlin"_s);
    clickRow(0);
    key(list("table"), Qt::Key_End);
    EXPECT_EQ(window()->selectedResult(), 7);
    searchResults(u"Neustadt"_s);
    EXPECT_EQ(window()->selectedResult(), -1);
    EXPECT_EQ(status(), says::choose);
    EXPECT_GE(list("table")->visualRect(model()->index(0, 0)).top(), 0);
}

} // namespace
