// Searching through the window, the real curl and a geocoder behind real TLS.

#include "Geocoder.h"
#include "WindowTest.h"

#include <QJsonArray>

using namespace Qt::StringLiterals;
using namespace app;

const ProgramLanguage programLanguage{"de", ""};

namespace {

Geocoder& geocoder = Geocoder::shared();

class SearchTest : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        geocoder.reset();
    }

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

// A behaviour from its keys.
using Behaviour = QJsonObject;

QJsonObject point(const QJsonArray& coordinates, const QString& name,
                  const QString& type = u"Point"_s) {
    return {{"type"_L1, "Feature"_L1},
            {"properties"_L1, QJsonObject{{"name"_L1, name}}},
            {"geometry"_L1, QJsonObject{{"type"_L1, type}, {"coordinates"_L1, coordinates}}}};
}

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

TEST_F(SearchTest, the_query_reaches_the_server_as_typed) {
    start();
    searchToTheEnd(u"  C++ & #1 100% ä 東京 🎬 "_s);
    const auto requests = geocoder.records("request");
    ASSERT_EQ(requests.size(), 1);
    EXPECT_EQ(requests.first().value("path"_L1).toString(), u"/api/"_s);
    EXPECT_EQ(requests.first().value("query"_L1).toString(),
              u"q=C%2B%2B%20%26%20%231%20100%25%20%C3%A4%20%E6%9D%B1%E4%BA%AC%20%F0%9F%8E%AC"
              "&limit=8&lang=de"_s);
    const auto connections = geocoder.records("connect");
    ASSERT_EQ(connections.size(), 1);
    EXPECT_EQ(connections.first().value("target"_L1).toString(), u"photon.komoot.io:443"_s);
}

TEST_F(SearchTest, a_query_of_300_characters_is_sent) {
    geocoder.behave(withBody(answer({})));
    start();
    for (const QString& query : {QString(300, u'x'), QString(u"🎬"_s).repeated(150)}) {
        searchToTheEnd(u" "_s + query + u"\t"_s);
        EXPECT_EQ(status(), says::nothing);
        EXPECT_EQ(geocoder.asked().last(), query);
    }
}

TEST_F(SearchTest, a_query_of_301_characters_or_of_blanks_never_leaves_the_window) {
    start();
    for (const QString& query : {QString(301, u'x'), QString(u"🎬"_s).repeated(150) + u'x',
                                 QString(), u" "_s, u" \t\u00a0\u3000 "_s}) {
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

TEST_F(SearchTest, of_twenty_places_the_first_eight_are_shown_in_their_order) {
    QList<QJsonObject> places;
    QStringList expected;
    for (int i = 0; i < 20; ++i) {
        places += feature(u"Ort %1"_s.arg(i));
        if (i < 8)
            expected += u"Ort %1\n52.0000, 13.0000"_s.arg(i);
    }
    geocoder.behave(withBody(answer(places)));
    start();
    searchResults(u"Ort"_s);
    EXPECT_EQ(rows(), expected);
    EXPECT_EQ(text("hint"), u"8 Treffer · bitte den richtigen Ort auswählen"_s);
}

TEST_F(SearchTest, a_feature_that_is_no_place_on_earth_is_skipped) {
    geocoder.behave(withBody(answer(
        {point({{QJsonArray{1, 2}, QJsonArray{3, 4}}}, u"Linie"_s, u"LineString"_s),
         point({1}, u"eine Zahl"_s), point({"1"_L1, 2}, u"Text"_s), point({true, 2}, u"wahr"_s),
         point({0, 91}, u"zu weit nördlich"_s), point({180.5, 0}, u"zu weit östlich"_s),
         point({-180, 90}, u"Pol"_s), point({1.5, 2.25, 900}, u"mit Höhe"_s)})));
    start();
    searchResults(u"Ort"_s);
    EXPECT_EQ(rows(), QStringList({u"Pol\n90.0000, -180.0000"_s, u"mit Höhe\n2.2500, 1.5000"_s}));
    EXPECT_EQ(text("hint"), u"2 Treffer · bitte den richtigen Ort auswählen"_s);
}

TEST_F(SearchTest, a_feature_without_properties_is_named_after_the_query) {
    QJsonObject bare = feature(QString());
    bare.remove("properties"_L1);
    geocoder.behave(withBody(answer({bare})));
    start();
    searchResults(u"  Hütte %1 %@ "_s);
    EXPECT_EQ(rows(), QStringList(u"Hütte %1 %@\n52.0000, 13.0000"_s));
}

TEST_F(SearchTest, the_name_is_not_repeated_but_a_street_of_that_name_is) {
    geocoder.behave(withBody(answer({
        feature(u"Berlin"_s, {{"city"_L1, "Berlin"_L1},
                              {"state"_L1, "Berlin"_L1},
                              {"country"_L1, "Deutschland"_L1}}),
        feature(
            u"Ring"_s,
            {{"street"_L1, "Ring"_L1}, {"city"_L1, "Ring"_L1}, {"country"_L1, "Deutschland"_L1}}),
        feature(u"Hof"_s, {{"street"_L1, u"Hauptstraße"_s},
                           {"housenumber"_L1, "5"_L1},
                           {"postcode"_L1, "10115"_L1},
                           {"city"_L1, "Berlin"_L1},
                           {"county"_L1, "Berlin"_L1},
                           {"country"_L1, "Deutschland"_L1}}),
    })));
    start();
    searchResults(u"Ort"_s);
    EXPECT_EQ(
        rows(),
        QStringList({u"Berlin\nDeutschland · 52.0000, 13.0000"_s,
                     u"Ring\nRing, Deutschland · 52.0000, 13.0000"_s,
                     u"Hof\nHauptstraße 5, 10115, Berlin, Deutschland · 52.0000, 13.0000"_s}));
}

TEST_F(SearchTest, nothing_found_is_no_error) {
    geocoder.behave(withBody(answer({})));
    start();
    searchToTheEnd(u"Nirgendwo"_s);
    expectNoRows(says::nothing);
    EXPECT_FALSE(statusIsRed());
}

TEST_F(SearchTest, a_failure_is_an_error_and_the_next_search_works) {
    const QString busy = u"Die Ortssuche antwortet gerade nicht. Bitte später erneut versuchen."_s;
    const QString unreachable =
        u"Die Ortssuche ist nicht erreichbar. Prüfe die Verbindung und versuche es erneut."_s;
    const QString tooLarge = u"Die Antwort der Ortssuche ist zu groß. Bitte präziser suchen."_s;
    const auto body = [](const QString& text) { return Behaviour{{"body"_L1, text}}; };
    const struct {
        const char* what;
        Behaviour behaviour;
        QString message;
    } failures[] = {
        {"a features object", body(u"{\"features\":{}}"_s), says::unreadable},
        {"an array on top", body(u"[]"_s), says::unreadable},
        {"no features", body(u"{}"_s), says::unreadable},
        {"no JSON", body(u"<html>"_s), says::unreadable},
        {"nothing at all", body(QString()), says::unreadable},
        {"half of an answer", body(u"{\"features\":[{"_s), says::unreadable},
        {"deep nesting",
         body(u"{\"features\":"_s + QString(5000, u'[') + QString(5000, u']') + u"}"_s),
         says::unreadable},
        {"status 404", {{"status"_L1, 404}}, busy},
        {"status 503", {{"status"_L1, 503}}, busy},
        {"a redirection", {{"status"_L1, 302}, {"location"_L1, "https://example.org/"_L1}}, busy},
        {"a cut answer", {{"cut_after"_L1, 300}}, unreachable},
        {"a large answer", {{"size"_L1, 1048577}}, tooLarge},
        {"a large answer in chunks", {{"size"_L1, 1048577}, {"chunked"_L1, true}}, tooLarge},
    };
    start();
    for (const auto& [what, behaviour, message] : failures) {
        SCOPED_TRACE(what);
        geocoder.behave(behaviour);
        searchToTheEnd(u"Berlin"_s);
        expectNoRows(message);
        EXPECT_TRUE(statusIsRed());
        geocoder.behave({});
        searchResults(u"Berlin"_s);
        EXPECT_FALSE(statusIsRed());
        EXPECT_EQ(rows().size(), 8);
    }
}

TEST_F(SearchTest, an_answer_of_a_mebibyte_is_read) {
    geocoder.behave({{"size"_L1, 1048576}, {"chunked"_L1, true}});
    start();
    searchResults(u"Berlin"_s);
    EXPECT_EQ(rows().size(), 8);
}

TEST_F(SearchTest, without_a_network_the_service_is_unreachable) {
    start();
    const QByteArray proxy = qgetenv("https_proxy");
    qputenv("https_proxy", "http://127.0.0.1:1");
    searchToTheEnd(u"Berlin"_s);
    qputenv("https_proxy", proxy);
    expectNoRows(
        u"Die Ortssuche ist nicht erreichbar. Prüfe die Verbindung und versuche es erneut."_s);
    EXPECT_TRUE(statusIsRed());
}

TEST_F(SearchTest, a_stranger_behind_the_name_is_not_believed) {
    start();
    const QByteArray authorities = qgetenv("CURL_CA_BUNDLE");
    qunsetenv("CURL_CA_BUNDLE");
    searchToTheEnd(u"Berlin"_s);
    qputenv("CURL_CA_BUNDLE", authorities);
    EXPECT_TRUE(statusIsRed());
    EXPECT_EQ(rows(), QStringList());
    EXPECT_EQ(geocoder.asked(), QStringList());
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
