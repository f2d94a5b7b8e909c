#include "search/PlaceSearch.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace search;

namespace {

const QUrl geocoder(u"https://geocoder.example/api/"_s);
const QByteArray twoPlaces = R"({"features":[
    {"geometry":{"type":"Point","coordinates":[13.4,52.5]},"properties":{"name":"Berlin"}},
    {"geometry":{"type":"Point","coordinates":[-7.5,33.6]},"properties":{}}]})";

QString say(SearchFailure failure) {
    return u"failure %1"_s.arg(int(failure));
}

// Lets everything happen that was posted: one piece each time.
void turn() {
    for (int i = 0; i < 4; ++i)
        QCoreApplication::processEvents();
}

// A search whose requests are answered by the test, when and how it likes.
class PlaceSearchTest : public testing::Test {
protected:
    struct Asked {
        QUrl url;
        NXPhotonSearch::Completion answer;
        int drops = 0;
    };

    std::function<void()> request(const QUrl& url, NXPhotonSearch::Completion completion) {
        const auto asked = std::make_shared<Asked>(Asked{url, std::move(completion)});
        asked_.push_back(asked);
        return [asked] { ++asked->drops; };
    }

    void ended(const QString& failure) {
        EXPECT_FALSE(search_->isRunning());
        ends_.push_back(failure);
    }

    std::vector<std::shared_ptr<Asked>> asked_;
    QStringList ends_;
    std::unique_ptr<PlaceSearch> search_ = std::make_unique<PlaceSearch>(
        geocoder, say, [this](const QString& failure) { ended(failure); },
        [this](const QUrl& url, NXPhotonSearch::Completion completion) {
            return request(url, std::move(completion));
        });
};

TEST_F(PlaceSearchTest, a_new_search_is_idle_and_has_found_nothing) {
    EXPECT_FALSE(search_->isRunning());
    EXPECT_TRUE(search_->found().rows.isEmpty());
}

TEST_F(PlaceSearchTest, a_begin_asks_the_geocoder) {
    search_->begin(u"Ulm + Umland"_s);
    EXPECT_TRUE(search_->isRunning());
    ASSERT_EQ(asked_.size(), 1U);
    EXPECT_EQ(asked_[0]->url.toString(QUrl::FullyEncoded),
              u"https://geocoder.example/api/?q=Ulm%20%2B%20Umland&limit=8&lang=de"_s);
}

TEST_F(PlaceSearchTest, an_answer_is_one_value_of_query_bytes_and_rows) {
    search_->begin(u"Ulm"_s);
    asked_[0]->answer(twoPlaces, {});
    EXPECT_TRUE(search_->isRunning()) << "what the person does now comes first";
    turn();
    EXPECT_EQ(ends_, QStringList{QString()});
    EXPECT_EQ(search_->found().query, u"Ulm"_s);
    EXPECT_EQ(search_->found().response, twoPlaces);
    ASSERT_EQ(search_->found().rows.size(), 2);
    EXPECT_EQ(search_->found().rows[0].longitude, 13.4);
    EXPECT_EQ(search_->found().rows[0].latitude, 52.5);
    EXPECT_EQ(search_->found().rows[1].name, u"Ulm"_s);
    EXPECT_EQ(asked_[0]->drops, 0);
}

TEST_F(PlaceSearchTest, what_goes_wrong_ends_it_with_nothing_found) {
    struct Row {
        std::optional<QByteArray> body;
        QString message, failure;
    };
    const QString notUnderstood = say(SearchFailure::NotUnderstood);
    for (const Row& row :
         {Row{std::nullopt, u"no network"_s, u"no network"_s}, Row{"{", {}, notUnderstood},
          Row{"", {}, notUnderstood}, Row{R"({"features":{}})", {}, notUnderstood},
          Row{R"({"features":[]})", {}, {}}}) {
        ends_.clear();
        search_->begin(u"Ulm"_s);
        asked_.back()->answer(row.body, row.message);
        turn();
        EXPECT_EQ(ends_, QStringList{row.failure});
        EXPECT_TRUE(search_->found().rows.isEmpty());
        EXPECT_TRUE(search_->found().query.isEmpty() && search_->found().response.isEmpty());
    }
}

TEST_F(PlaceSearchTest, a_begin_forgets_what_was_found_before) {
    search_->begin(u"Ulm"_s);
    asked_[0]->answer(twoPlaces, {});
    turn();
    search_->begin(u"Bern"_s);
    EXPECT_TRUE(search_->found().rows.isEmpty());
    EXPECT_TRUE(search_->found().response.isEmpty());
}

TEST_F(PlaceSearchTest, forget_forgets_and_stop_does_not) {
    search_->begin(u"Ulm"_s);
    asked_[0]->answer(twoPlaces, {});
    turn();
    search_->stop();
    EXPECT_EQ(search_->found().rows.size(), 2);
    search_->forget();
    EXPECT_TRUE(search_->found().rows.isEmpty());
    EXPECT_EQ(ends_.size(), 1);
}

// Late in each of the two ways: before the answer is read, and after.
TEST_F(PlaceSearchTest, a_late_answer_changes_nothing) {
    const std::function<void()> events[] = {[this] { search_->stop(); },
                                            [this] { search_->forget(); },
                                            [this] { search_->begin(u"Bern"_s); }};
    for (const auto& event : events) {
        for (const bool isRead : {false, true}) {
            search_->begin(u"Ulm"_s);
            const auto old = asked_.back();
            if (isRead)
                old->answer(twoPlaces, {});
            event();
            if (!isRead)
                old->answer(twoPlaces, {});
            turn();
            EXPECT_EQ(old->drops, 1);
            EXPECT_TRUE(search_->found().rows.isEmpty());
            EXPECT_TRUE(ends_.isEmpty());
        }
    }
}

TEST_F(PlaceSearchTest, of_two_searches_only_the_second_is_shown_whichever_answers_first) {
    for (const bool oldFirst : {false, true}) {
        ends_.clear();
        search_->begin(u"Ulm"_s);
        const auto old = asked_.back();
        search_->begin(u"Bern"_s);
        const auto fresh = asked_.back();
        EXPECT_TRUE(search_->isRunning());
        (oldFirst ? old : fresh)->answer(twoPlaces, {});
        (oldFirst ? fresh : old)->answer(twoPlaces, {});
        turn();
        EXPECT_EQ(search_->found().query, u"Bern"_s);
        EXPECT_EQ(ends_.size(), 1);
    }
}

TEST_F(PlaceSearchTest, a_stopped_search_is_idle_and_can_begin_again) {
    search_->begin(u"Ulm"_s);
    search_->stop();
    EXPECT_FALSE(search_->isRunning());
    EXPECT_EQ(asked_[0]->drops, 1);
    search_->stop();
    EXPECT_EQ(asked_[0]->drops, 1);
    search_->begin(u"Ulm"_s);
    asked_[1]->answer(twoPlaces, {});
    turn();
    EXPECT_EQ(search_->found().rows.size(), 2);
}

TEST_F(PlaceSearchTest, its_end_drops_the_request_and_reports_nothing) {
    search_->begin(u"Ulm"_s);
    const auto asked = asked_.back();
    asked->answer(twoPlaces, {});
    search_.reset();
    asked->answer(twoPlaces, {});
    turn();
    EXPECT_EQ(asked->drops, 1);
    EXPECT_TRUE(ends_.isEmpty());
}

} // namespace
