// What a person, a geocoder and an event loop can do to a search, in any order; after each event
// the search is what a model of a few lines says.

#include "Sequences.h"
#include "platform/Threads.h"
#include "search/PlaceSearch.h"

#include <QCoreApplication>
#include <QUrlQuery>

#include <deque>
#include <ostream>

using namespace Qt::StringLiterals;
using namespace search;

namespace {

QString say(SearchFailure failure) {
    return u"failure %1"_s.arg(int(failure));
}

struct Answer {
    std::optional<QByteArray> body;
    QString message;
    // What it comes to.
    QString failure;
    QStringList names; // of the rows; "?" is the query
};

QByteArray places(const QByteArrayList& names) {
    QByteArrayList features;
    for (const QByteArray& name : names)
        features +=
            R"({"geometry":{"type":"Point","coordinates":[7.5,51]},"properties":{)" + name + "}}";
    return R"({"features":[)" + features.join(',') + "]}";
}

const Answer answers[] = {
    {places({R"("name":"Ulm")", R"("name":"Bern")"}), {}, {}, {u"Ulm"_s, u"Bern"_s}},
    {places({R"("name":"東京")"}), {}, {}, {u"東京"_s}},
    {places({""}), {}, {}, {u"?"_s}},
    {places(QByteArrayList(9, R"("name":"Rom")")), {}, {}, QStringList(8, u"Rom"_s)},
    {places({}), {}, {}, {}},
    {R"({"features":[{"geometry":null}]})", {}, {}, {}},
    {"", {}, say(SearchFailure::NotUnderstood), {}},
    {"{", {}, say(SearchFailure::NotUnderstood), {}},
    {R"({"features":0})", {}, say(SearchFailure::NotUnderstood), {}},
    {std::nullopt, u"no network"_s, u"no network"_s, {}},
};

// What a search shows.
struct Shown {
    bool isRunning = false;
    QString query;
    QByteArray response;
    QStringList names;

    bool operator==(const Shown&) const = default;
};

void PrintTo(const Shown& shown, std::ostream* out) {
    *out << (shown.isRunning ? "running" : "idle") << ", “" << shown.query.toStdString()
         << "”: " << shown.names.join(u", "_s).toStdString() << " of " << shown.response.size()
         << " bytes";
}

Shown shownBy(const PlaceSearch& search) {
    Shown shown{search.isRunning(), search.found().query, search.found().response, {}};
    for (const ResultRow& row : search.found().rows)
        shown.names += row.name;
    return shown;
}

// One search after the other, with the requests that they have made, and beside them what each
// should be. Nothing here counts generations: a request is the current one or it is not.
class Play {
public:
    explicit Play(Sequence& sequence) : sequence_(sequence) { renew(); }

    void run() {
        const unsigned events = 4 + sequence_.below(40);
        for (unsigned i = 0; i < events && !testing::Test::HasFailure(); ++i) {
            anyEvent();
            compare();
        }
        sequence_.does("turn until nothing is left");
        while (!posted_.empty() && !testing::Test::HasFailure())
            turn();
        compare();
    }

private:
    struct Asked {
        QString query;
        NXPhotonSearch::Completion answer;
        bool isAnswered = false;
        int drops = 0;         // as counted
        int expectedDrops = 0; // as they should be
    };
    struct Posted {
        std::shared_ptr<Asked> asked;
        const Answer* answer;
    };

    void anyEvent() {
        switch (sequence_.below(16)) {
        case 0:
        case 1:
        case 2:
        case 3:
            return begin(sequence_.any(queries_));
        case 4:
            return stop();
        case 5:
            return forget();
        case 6:
            return sequence_.oneIn(3) ? renew() : begin(sequence_.any(queries_));
        case 7:
        case 8:
            return answerAnother();
        case 9:
        case 10:
        case 11:
            return answerCurrent();
        default:
            sequence_.does("turn");
            return turn();
        }
    }

    // --- events, each told to the search and to the model ---

    void begin(const QString& query) {
        sequence_.does("begin " + query.toStdString());
        drop();
        expected_ = {true, {}, {}, {}};
        const size_t before = asked_.size();
        search_->begin(query);
        ASSERT_EQ(asked_.size(), before + 1);
        current_ = asked_.back();
        EXPECT_EQ(current_->query, query) << "asked for something else";
    }

    void stop() {
        sequence_.does("stop");
        drop();
        expected_.isRunning = false;
        search_->stop();
    }

    void forget() {
        sequence_.does("forget");
        drop();
        expected_ = {};
        search_->forget();
    }

    // The end of the search, with whatever is on its way to it, and another one.
    void renew() {
        sequence_.does("end and a new one");
        drop();
        expected_ = {};
        search_ = std::make_unique<PlaceSearch>(
            QUrl(u"https://geocoder.example/api/"_s), say,
            [this](const QString& failure) { ended(failure); },
            [this](const QUrl& url, NXPhotonSearch::Completion completion) {
                return request(url, std::move(completion));
            });
    }

    void answerCurrent() {
        // A request answers once; nobody has dropped this one.
        if (current_ && !current_->isAnswered)
            answer(current_, "the current");
    }

    // One that was dropped may say anything, late and often.
    void answerAnother() {
        if (asked_.empty())
            return;
        const auto asked = sequence_.any(asked_);
        if (asked->expectedDrops > 0)
            answer(asked, "a dropped");
    }

    void answer(const std::shared_ptr<Asked>& asked, const std::string& which) {
        const Answer& given = sequence_.any(answers);
        sequence_.does("answer number " + std::to_string(&given - answers) + " to " + which +
                       " request for " + asked->query.toStdString());
        asked->isAnswered = true;
        posted_.push_back({asked, &given});
        asked->answer(given.body, given.message);
        // Behind what the search has posted, or has not.
        platform::postToMain([this] { arrived(); });
    }

    // One posted piece comes to its turn, and what stands behind it.
    void turn() {
        const size_t before = posted_.size();
        for (int turns = 0; before > 0 && posted_.size() == before; ++turns) {
            ASSERT_LT(turns, 100) << "the main thread's queue stands still";
            QCoreApplication::processEvents();
        }
        EXPECT_EQ(ends_, expectedEnds_);
    }

    // --- what comes back ---

    std::function<void()> request(const QUrl& url, NXPhotonSearch::Completion completion) {
        const QString query = QUrlQuery(url).queryItemValue(u"q"_s, QUrl::FullyDecoded);
        asked_.push_back(std::make_shared<Asked>(Asked{query, std::move(completion)}));
        return [asked = asked_.back()] { ++asked->drops; };
    }

    void ended(const QString& failure) {
        // The model hears of the answer before the search's word of it is judged.
        ends_ += failure;
        if (posted_.empty() || posted_.front().asked != current_) {
            ADD_FAILURE() << "it ended by an answer that nobody waits for";
            return;
        }
        take(posted_.front());
        EXPECT_EQ(shownBy(*search_), expected_) << "told in another state";
        if (sequence_.oneIn(4)) {
            sequence_.does("and from inside its end:");
            begin(sequence_.any(queries_));
        }
    }

    void arrived() {
        const Posted posted = posted_.front();
        posted_.pop_front();
        if (posted.asked == current_ && current_) {
            // It should have ended the search before this.
            take(posted);
            ADD_FAILURE() << "an answer came and it did not end";
        }
    }

    // --- the model ---

    void take(const Posted& posted) {
        expectedEnds_ += posted.answer->failure;
        expected_ = {};
        if (!posted.answer->names.isEmpty()) {
            expected_ = {false, current_->query, *posted.answer->body, posted.answer->names};
            expected_.names.replaceInStrings(u"?"_s, current_->query);
        }
        current_ = nullptr;
    }

    void drop() {
        if (current_)
            ++current_->expectedDrops;
        current_ = nullptr;
    }

    void compare() {
        EXPECT_EQ(shownBy(*search_), expected_);
        EXPECT_EQ(ends_, expectedEnds_);
        for (const auto& each : asked_)
            EXPECT_EQ(each->drops, each->expectedDrops) << "of " << each->query.toStdString();
    }

    const QStringList queries_{u"Ulm"_s, u"C++ & 1 100%"_s, u"ä 🎬"_s, u"?"_s};

    Sequence& sequence_;
    std::vector<std::shared_ptr<Asked>> asked_; // by all searches of this play
    QStringList ends_;
    std::unique_ptr<PlaceSearch> search_;

    std::shared_ptr<Asked> current_; // what the search waits for, if it runs
    std::deque<Posted> posted_;      // answers that have been given and have not arrived
    Shown expected_;
    QStringList expectedEnds_;
};

TEST(PlaceSearchSequences, a_search_is_what_the_model_says_after_every_event) {
    playSequences(2500, [](Sequence& sequence) { Play(sequence).run(); });
}

} // namespace
