// A person who does not wait: edits, cancels and new searches while one runs.

#include "SearchWindowTest.h"
#include "WaitUntil.h"
#include "platform/Threads.h"

#include <QClipboard>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QMimeData>

namespace {

// Ways to change the text of a field.
struct Edit {
    const char* name;
    std::function<void(QLineEdit*)> make;
};
void PrintTo(const Edit& edit, std::ostream* out) {
    *out << edit.name;
}

void drop(QLineEdit* field) {
    QMimeData data;
    data.setText(u"Ulm"_s);
    const QPoint position(20, 10);
    QDragEnterEvent enter(position, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(field, &enter);
    QDropEvent event(position, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(field, &event);
}

void compose(QLineEdit* field) {
    QInputMethodEvent composing(u"東"_s, {});
    QCoreApplication::sendEvent(field, &composing);
    QInputMethodEvent commit;
    commit.setCommitString(u"東京"_s);
    QCoreApplication::sendEvent(field, &commit);
}

const Edit edits[] = {
    {"a_key", [](QLineEdit* field) { QTest::keyClick(field, Qt::Key_X); }},
    {"backspace", [](QLineEdit* field) { QTest::keyClick(field, Qt::Key_Backspace); }},
    {"undo", [](QLineEdit* field) { QTest::keySequence(field, QKeySequence::Undo); }},
    {"cut",
     [](QLineEdit* field) {
         field->selectAll();
         QTest::keySequence(field, QKeySequence::Cut);
     }},
    {"paste",
     [](QLineEdit* field) {
         QGuiApplication::clipboard()->setText(u"Ulm"_s);
         QTest::keySequence(field, QKeySequence::Paste);
     }},
    {"drop", drop},
    {"input_method", compose},
    {"assistive_technology_inserts",
     [](QLineEdit* field) {
         auto* spoken = QAccessible::queryAccessibleInterface(field);
         spoken->editableTextInterface()->insertText(0, u"Ulm"_s);
     }},
    {"assistive_technology_replaces",
     [](QLineEdit* field) {
         QAccessible::queryAccessibleInterface(field)->setText(QAccessible::Value, u"Ulm"_s);
     }},
};

class SearchEditTest : public SearchWindowTest, public testing::WithParamInterface<Edit> {
protected:
    // Begins a search that is never answered.
    void beginEndlessSearch() {
        geocoder.behave({{"hang"_L1, true}}, u"Köln"_s);
        search(u"Köln"_s);
        ASSERT_EVENTUALLY(geocoder.asked().size() == 1);
        ASSERT_TRUE(isBusy());
    }

    // Everything is as before the first search, but for the placeholder.
    void expectIdleWithoutRows(const QString& message) {
        EXPECT_EQ(status(), message);
        EXPECT_FALSE(statusIsRed());
        EXPECT_FALSE(isBusy());
        EXPECT_FALSE(control<look::Spinner>("spinner")->isTurning());
        EXPECT_EQ(rows(), QStringList());
        EXPECT_TRUE(control("placeholder")->isVisible());
        EXPECT_EQ(text("hint"), says::firstHint);
        EXPECT_TRUE(control("searchButton")->isEnabled());
        EXPECT_FALSE(control("downloadButton")->isEnabled());
    }
};

INSTANTIATE_TEST_SUITE_P(Edits, SearchEditTest, testing::ValuesIn(edits),
                         [](const auto& each) { return std::string(each.param.name); });

TEST_P(SearchEditTest, an_edit_stops_the_search_that_runs) {
    start();
    beginEndlessSearch();
    const QString before = field("query")->text();
    GetParam().make(field("query"));
    EXPECT_NE(field("query")->text(), before);
    expectIdleWithoutRows(says::ready);
    EXPECT_EQ(text("placeholder"), u"Suche läuft …"_s) << "an edit leaves this text as it is";
    EXPECT_TRUE(curlIsStopped());
    EXPECT_EVENTUALLY(livingDescendants().empty());
    settle();
    expectIdleWithoutRows(says::ready);
}

TEST_P(SearchEditTest, an_edit_discards_the_results) {
    start();
    searchResults(u"Berlin"_s);
    clickRow(1);
    EXPECT_TRUE(control("downloadButton")->isEnabled());
    field("query")->setFocus();
    GetParam().make(field("query"));
    expectIdleWithoutRows(says::ready);
    EXPECT_EQ(text("placeholder"), u"Keine passenden Orte gefunden"_s);
    EXPECT_EQ(window()->selectedResult(), -1);
}

TEST_F(SearchEditTest, composing_alone_is_no_edit) {
    start();
    searchResults(u"Berlin"_s);
    QInputMethodEvent composing(u"東"_s, {});
    QCoreApplication::sendEvent(field("query"), &composing);
    EXPECT_EQ(rows().size(), 8);
    QInputMethodEvent given(QString(), {});
    QCoreApplication::sendEvent(field("query"), &given);
    EXPECT_EQ(rows().size(), 8);
}

TEST_F(SearchEditTest, a_key_that_changes_no_text_is_no_edit) {
    start();
    searchResults(u"Berlin"_s);
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Home, Qt::Key_End, Qt::Key_Delete})
        this->key(field("query"), key);
    EXPECT_EQ(rows().size(), 8);
    EXPECT_EQ(status(), says::choose);
}

TEST_F(SearchEditTest, an_edit_of_another_field_keeps_the_results) {
    start();
    choose("endpoint", 3);
    searchResults(u"Berlin"_s);
    QTest::keyClicks(field("endpointField"), u"https://a.example"_s);
    EXPECT_EQ(rows().size(), 8);
    EXPECT_EQ(status(), says::choose);
}

TEST_F(SearchEditTest, an_edit_in_route_mode_keeps_what_it_says_of_stations) {
    start(Mode::Route);
    searchResults(u"Berlin"_s);
    QTest::keyClicks(field("query"), u"x"_s);
    expectIdleWithoutRows(u"Neuen Ort suchen. Deine bisherigen Stationen bleiben erhalten."_s);
}

TEST_F(SearchEditTest, of_two_quick_searches_only_the_second_is_shown) {
    geocoder.behave(withBody(answer({feature(u"Erster"_s)})), u"eins"_s);
    geocoder.behave(withBody(answer({feature(u"Zweiter"_s)})), u"zwei"_s);
    start();
    QStringList shown;
    QObject::connect(list("table")->model(), &QAbstractItemModel::modelReset, window(),
                     [&] { shown += rows(); });
    search(u"eins"_s);
    search(u"zwei"_s);
    ASSERT_EVENTUALLY(!isBusy());
    EXPECT_EVENTUALLY(livingDescendants().empty());
    settle();
    EXPECT_EQ(rows(), QStringList(u"Zweiter\n52.0000, 13.0000"_s));
    EXPECT_EQ(shown, rows());
}

TEST_F(SearchEditTest, return_while_a_search_runs_starts_it_anew) {
    start();
    beginEndlessSearch();
    key(field("query"), Qt::Key_Return);
    EXPECT_TRUE(isBusy());
    EXPECT_EQ(status(), says::searching);
    EXPECT_EVENTUALLY(geocoder.asked() == QStringList({u"Köln"_s, u"Köln"_s}));
    EXPECT_TRUE(curlIsStopped());
    click(button("cancelButton"));
}

class LateAnswerTest : public SearchEditTest {
protected:
    // Searches, and lets `act` happen in the middle of the answer: after it was read, and before
    // it is shown.
    template<typename Act>
    void actBeforeTheAnswerShows(Act act) {
        // The first request starts a thread that stays for the time limits.
        searchResults(u"Wien"_s);
        ASSERT_TRUE(waitUntil([] { return livingDescendants().empty(); }));
        const int threads = threadsOfThisProcess();
        search(u"Berlin"_s);
        // No event is delivered until the answer waits in the main queue: the reader has gone.
        ASSERT_TRUE(waitUntil([] { return livingDescendants().empty(); }));
        ASSERT_TRUE(waitUntil([&] { return threadsOfThisProcess() <= threads; }));
        EXPECT_EQ(status(), says::searching);
        bool passed = false;
        platform::postToMain([&] {
            // The answer was read just now, and is shown in the turn after this one.
            EXPECT_EQ(status(), says::searching);
            act();
            platform::postToMain([&] { passed = true; });
        });
        ASSERT_EVENTUALLY(passed);
    }

private:
    static int threadsOfThisProcess() {
        return int(QDir(u"/proc/self/task"_s).entryList(QDir::NoDotAndDotDot | QDir::Dirs).size());
    }
};

TEST_F(LateAnswerTest, an_answer_that_was_read_already_shows) {
    start();
    actBeforeTheAnswerShows([] {});
    EXPECT_EQ(status(), says::choose);
    EXPECT_EQ(rows().size(), 8);
}

TEST_F(LateAnswerTest, a_late_answer_after_an_edit_changes_nothing) {
    start();
    actBeforeTheAnswerShows([&] { QTest::keyClicks(field("query"), u"x"_s); });
    expectIdleWithoutRows(says::ready);
}

TEST_F(LateAnswerTest, a_late_answer_after_a_cancel_changes_nothing) {
    start();
    actBeforeTheAnswerShows([&] { click(button("cancelButton")); });
    expectIdleWithoutRows(says::searchCancelled);
    EXPECT_EQ(text("placeholder"), u"Suche abgebrochen"_s);
}

TEST_F(LateAnswerTest, a_late_answer_after_a_new_search_changes_nothing) {
    start();
    geocoder.behave({{"hang"_L1, true}}, u"Köln"_s);
    actBeforeTheAnswerShows([&] { search(u"Köln"_s); });
    EXPECT_TRUE(isBusy());
    EXPECT_EQ(status(), says::searching);
    EXPECT_EQ(rows(), QStringList());
    click(button("cancelButton"));
}

TEST_F(LateAnswerTest, a_late_answer_after_the_window_is_gone_is_dropped) {
    start();
    actBeforeTheAnswerShows([&] { end(); });
}

TEST_F(SearchEditTest, cancel_and_escape_stop_the_search) {
    start();
    for (const auto& way : std::initializer_list<std::function<void()>>{
             [&] { click(button("cancelButton")); }, [&] { key(field("query"), Qt::Key_Escape); },
             [&] { key(list("table"), Qt::Key_Escape); }}) {
        geocoder.reset();
        beginEndlessSearch();
        way();
        expectIdleWithoutRows(says::searchCancelled);
        EXPECT_EQ(text("placeholder"), u"Suche abgebrochen"_s);
        EXPECT_TRUE(curlIsStopped());
        EXPECT_EVENTUALLY(livingDescendants().empty());
    }
    geocoder.reset();
    searchResults(u"Köln"_s);
}

TEST_F(SearchEditTest, escape_does_nothing_while_nothing_runs) {
    start();
    searchResults(u"Berlin"_s);
    key(field("query"), Qt::Key_Escape);
    EXPECT_EQ(status(), says::choose);
    EXPECT_EQ(rows().size(), 8);
}

} // namespace
