// Searching through the window, the real curl and a geocoder behind real TLS.

#include "SearchWindowTest.h"

const ProgramLanguage programLanguage{"de", ""};

namespace {

class SearchTest : public SearchWindowTest {
protected:
    // Searches and waits for the end, however it comes.
    void searchToTheEnd(const QString& text) {
        search(text);
        ASSERT_EVENTUALLY(!isBusy());
    }

    void expectNoRows(const QString& message) {
        EXPECT_EQ(status(), message);
        EXPECT_EQ(rows(), QStringList());
        EXPECT_EQ(text("placeholder"), u"Keine passenden Orte gefunden"_s);
        EXPECT_TRUE(control("placeholder")->isVisible());
        EXPECT_EQ(text("hint"), says::firstHint);
        EXPECT_FALSE(control("downloadButton")->isEnabled());
    }
};

TEST_F(SearchTest, results_show_with_region_and_coordinates) {
    start();
    search(u"Berlin"_s);
    EXPECT_EQ(status(), says::searching);
    EXPECT_FALSE(statusIsRed());
    EXPECT_EQ(text("placeholder"), u"Suche läuft …"_s);
    EXPECT_TRUE(control("placeholder")->isVisible());
    ASSERT_EVENTUALLY(!isBusy());
    EXPECT_EQ(status(), says::choose);
    EXPECT_FALSE(statusIsRed());
    EXPECT_EQ(text("hint"), u"8 Treffer · bitte den richtigen Ort auswählen"_s);
    ASSERT_EQ(rows().size(), 8);
    EXPECT_EQ(rows().first(), u"Berlin\nDeutschland · 52.5174, 13.3951"_s);
    EXPECT_FALSE(control("placeholder")->isVisible());
    EXPECT_EQ(window()->selectedResult(), -1);
    EXPECT_FALSE(control("downloadButton")->isEnabled()) << "nothing is chosen yet";
}

TEST_F(SearchTest, the_button_searches_as_return_does) {
    start();
    QTest::keyClicks(field("query"), u"Ulm"_s);
    click(button("searchButton"));
    EXPECT_EQ(status(), says::searching);
    ASSERT_EVENTUALLY(!isBusy());
    EXPECT_EQ(geocoder.asked(), QStringList(u"Ulm"_s));
}

TEST_F(SearchTest, while_it_runs_only_what_it_does_not_disturb_can_be_used) {
    for (const Mode mode : {Mode::Place, Mode::Route}) {
        geocoder.behave({{"hang"_L1, true}});
        start(mode);
        const QString title = button("downloadButton")->title();
        search(u"Ulm"_s);
        for (const char* name : {"query", "radius", "endpoint", "endpointField", "table",
                                 "stationTable", "routeEndpointField", "travel", "cancelButton"})
            EXPECT_TRUE(control(name)->isEnabled()) << name;
        for (const char* name :
             {"searchButton", "mode", "languageButton", "addStationButton", "downloadButton"})
            EXPECT_FALSE(control(name)->isEnabled()) << name;
        EXPECT_TRUE(control("cancelButton")->isVisible());
        EXPECT_TRUE(control("spinner")->isVisible());
        EXPECT_TRUE(control<look::Spinner>("spinner")->isTurning());
        EXPECT_EQ(button("downloadButton")->title(), title);
        click(button("cancelButton"));
        EXPECT_FALSE(control<look::Spinner>("spinner")->isTurning());
        for (const char* name : {"searchButton", "mode", "languageButton"})
            EXPECT_TRUE(control(name)->isEnabled()) << name;
        end();
    }
}

TEST_F(SearchTest, a_query_of_300_characters_is_sent) {
    geocoder.behave(withBody(answer({})));
    start();
    const QString query = QString(u"🎬"_s).repeated(150); // counted in UTF-16 units
    searchToTheEnd(u" "_s + query + u"\t"_s);
    EXPECT_EQ(status(), says::nothing);
    EXPECT_EQ(geocoder.asked(), QStringList(query));
}

TEST_F(SearchTest, a_query_of_301_characters_or_of_blanks_never_leaves_the_window) {
    start();
    for (const QString& query :
         {QString(u"🎬"_s).repeated(150) + u'x', QString(), u" \t\u00a0\u3000 "_s}) {
        field("query")->setText(query);
        EXPECT_FALSE(statusIsRed());
        key(field("query"), Qt::Key_Return);
        EXPECT_EQ(status(), says::badQuery);
        EXPECT_TRUE(statusIsRed());
        EXPECT_FALSE(isBusy());
    }
    settle();
    EXPECT_EQ(geocoder.records("connect").size(), 0);
}

TEST_F(SearchTest, a_refused_query_leaves_the_previous_results_untouched) {
    start();
    searchResults(u"Berlin"_s);
    clickRow(2);
    const QStringList before = rows();
    {
        // Any edit that the window sees discards the results: this one it does not see.
        const QSignalBlocker unseen(field("query"));
        field("query")->setText(QString(301, u'x'));
    }
    for (const bool byButton : {false, true}) {
        byButton ? click(button("searchButton")) : key(field("query"), Qt::Key_Return);
        EXPECT_EQ(status(), says::badQuery);
        EXPECT_TRUE(statusIsRed());
        EXPECT_EQ(rows(), before);
        EXPECT_EQ(window()->selectedResult(), 2);
        EXPECT_EQ(text("hint"), u"8 Treffer · bitte den richtigen Ort auswählen"_s);
        EXPECT_TRUE(control("downloadButton")->isEnabled());
    }
}

TEST_F(SearchTest, nothing_found_is_no_error) {
    geocoder.behave(withBody(answer({})));
    start();
    searchToTheEnd(u"Nirgendwo"_s);
    expectNoRows(says::nothing);
    EXPECT_FALSE(statusIsRed());
}

TEST_F(SearchTest, a_failure_is_an_error_and_the_next_search_works) {
    start();
    geocoder.behave({{"status"_L1, 503}});
    searchToTheEnd(u"Berlin"_s);
    expectNoRows(u"Die Ortssuche antwortet gerade nicht. Bitte später erneut versuchen."_s);
    EXPECT_TRUE(statusIsRed());
    geocoder.behave({});
    searchResults(u"Berlin"_s);
    EXPECT_FALSE(statusIsRed());
    EXPECT_EQ(rows().size(), 8);
}

TEST_F(SearchTest, the_heading_of_the_results_stays_while_the_next_search_runs_and_fails) {
    start();
    searchResults(u"Berlin"_s);
    const QString heading = text("hint");
    geocoder.behave({{"status"_L1, 503}});
    key(field("query"), Qt::Key_Return);
    ASSERT_TRUE(isBusy());
    EXPECT_EQ(text("hint"), heading);
    ASSERT_EVENTUALLY(!isBusy());
    EXPECT_TRUE(statusIsRed());
    EXPECT_EQ(text("hint"), heading);
}

TEST_F(SearchTest, the_status_tooltip_is_the_status) {
    start();
    EXPECT_EQ(toolTipAt(control("status"), {5, 5}), says::ready);
    searchToTheEnd(u"Berlin"_s);
    EXPECT_EQ(toolTipAt(control("status"), {5, 5}), says::choose);
    field("query")->clear();
    key(field("query"), Qt::Key_Return);
    EXPECT_EQ(toolTipAt(control("status"), {5, 5}), says::badQuery);
}

TEST_F(SearchTest, the_next_plain_status_is_grey_again) {
    start();
    key(field("query"), Qt::Key_Return);
    EXPECT_TRUE(statusIsRed());
    QTest::keyClicks(field("query"), u"B"_s);
    EXPECT_EQ(status(), says::ready);
    EXPECT_FALSE(statusIsRed());
}

TEST_F(SearchTest, down_goes_to_the_first_result) {
    start();
    key(field("query"), Qt::Key_Down);
    EXPECT_TRUE(field("query")->hasFocus()) << "there is nowhere to go";
    searchResults(u"Berlin"_s);
    EXPECT_TRUE(field("query")->hasFocus());
    key(field("query"), Qt::Key_Down);
    EXPECT_TRUE(list("table")->hasFocus());
    EXPECT_EQ(window()->selectedResult(), 0);
    EXPECT_EQ(status(), says::chosen);
    key(list("table"), Qt::Key_Down);
    EXPECT_EQ(window()->selectedResult(), 1);
}

TEST_F(SearchTest, down_returns_to_the_chosen_result) {
    start();
    searchResults(u"Berlin"_s);
    clickRow(3);
    field("query")->setFocus();
    key(field("query"), Qt::Key_Down);
    EXPECT_TRUE(list("table")->hasFocus());
    EXPECT_EQ(window()->selectedResult(), 3);
}

} // namespace
