#include "search/NXPhotonSearch.h"

#include "ChildTest.h"
#include "TemporaryFolder.h"
#include "TurnUntil.h"
#include "platform/Threads.h"

#include <QCoreApplication>

#include <signal.h>
#include <sys/stat.h>

#include <atomic>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace search;
using platform::ChildExit;

namespace {

// What a request says stands for the failure; the sentences are not its business.
QString say(SearchFailure failure) {
    return u"failure %1"_s.arg(int(failure));
}

const QUrl address(u"https://example.invalid/api/?q=Ulm"_s);

// A request whose curl is a line of shell script, in which $HELPER is the helper program.
class NXPhotonSearchTest : public ChildTest {
protected:
    void SetUp() override {
        ChildTest::SetUp();
        ASSERT_EQ(::setenv("HELPER", CHILD_HELPER, 1), 0);
    }

    std::shared_ptr<NXPhotonSearch> searchWith(const std::string& script,
                                               std::chrono::milliseconds patience = 22s) {
        const std::filesystem::path path = folder_ / "curl";
        write(path, "#!/bin/sh\n" + script + "\n");
        EXPECT_EQ(::chmod(path.c_str(), 0755), 0);
        return NXPhotonSearch::make(say, {.program = path.string(), .patience = patience});
    }

    NXPhotonSearch::Completion note() {
        return [this](const std::optional<QByteArray>& body, const QString& message) {
            ++deliveries_;
            body_ = body;
            message_ = message;
            onMainThread_ = std::this_thread::get_id() == mainThread_;
        };
    }

    // Starts the request, waits for what it delivers, and for a second delivery that must not come:
    // until nothing is left that could make one.
    void runToTheEnd(const std::shared_ptr<NXPhotonSearch>& search, const QUrl& url = address) {
        search->start(url, note());
        EXPECT_EQ(deliveries_, 0) << "delivered inside start()";
        EXPECT_TRUE(turnUntil([&] { return deliveries_ > 0; }));
        waitUntilNothingRuns(*search);
        EXPECT_EQ(deliveries_, 1);
        EXPECT_TRUE(onMainThread_);
        EXPECT_NE(body_.has_value(), !message_.isEmpty());
        EXPECT_TRUE(search->completed());
        EXPECT_FALSE(search->cancelled());
        EXPECT_FALSE(search->completion());
    }

    void waitUntilNothingRuns(const NXPhotonSearch& search) {
        const auto child = search.task();
        EXPECT_TRUE(turnUntil([&] { return !child || !child->isRunning(); }));
        QCoreApplication::processEvents();
    }

    void expectFailure(SearchFailure failure) {
        EXPECT_EQ(message_, say(failure));
        EXPECT_FALSE(body_.has_value());
    }

    const TemporaryFolder folder_;
    const std::thread::id mainThread_ = std::this_thread::get_id();
    int deliveries_ = 0;
    std::optional<QByteArray> body_;
    QString message_;
    bool onMainThread_ = false;
};

TEST_F(NXPhotonSearchTest, a_new_request_is_empty) {
    const auto search = NXPhotonSearch::make(say);
    EXPECT_EQ(search->task(), nullptr);
    EXPECT_FALSE(search->completion());
    EXPECT_FALSE(search->completed());
    EXPECT_FALSE(search->cancelled());
}

TEST_F(NXPhotonSearchTest, an_address_that_is_not_https_is_refused_on_a_later_turn) {
    const char16_t* const refused[] = {u"", u"http://example.org/", u"https://user@example.org/"};
    for (const char16_t* text : refused) {
        deliveries_ = 0;
        const auto search = searchWith("exit 0");
        runToTheEnd(search, QUrl(QString::fromUtf16(text)));
        expectFailure(SearchFailure::AddressRefused);
        EXPECT_EQ(search->task(), nullptr) << "a child was made";
    }
}

TEST_F(NXPhotonSearchTest, a_scheme_in_capitals_is_accepted) {
    runToTheEnd(searchWith("printf '{}\\n200'"), QUrl(u"HTTPS://example.invalid/"_s));
    EXPECT_EQ(body_, QByteArray("{}"));
}

TEST_F(NXPhotonSearchTest, curl_gets_22_arguments_with_the_address_last) {
    runToTheEnd(searchWith("\"$HELPER\" print-arguments \"$@\"; printf '\\n200'"));
    QList<QByteArray> arguments = body_.value_or(QByteArray()).split('\0');
    ASSERT_EQ(arguments.size(), 23); // the last one is what follows the last NUL
    EXPECT_EQ(arguments.at(0), "-q");
    EXPECT_EQ(arguments.at(19), "\n%{http_code}");
    EXPECT_EQ(arguments.at(20), "--url");
    EXPECT_EQ(arguments.at(21), "https://example.invalid/api/?q=Ulm");
}

TEST_F(NXPhotonSearchTest, a_missing_curl_is_a_failed_start) {
    const auto search = NXPhotonSearch::make(say, {.program = "/nowhere/curl"});
    const int before = openDescriptors();
    runToTheEnd(search);
    expectFailure(SearchFailure::NotStarted);
    ASSERT_NE(search->task(), nullptr);
    EXPECT_FALSE(search->task()->isRunning());
    EXPECT_LE(openDescriptors(), before + 2) << "more is open than the child's exit descriptor";
}

TEST_F(NXPhotonSearchTest, what_curl_does_becomes_one_delivery) {
    struct Row {
        const char* script;
        std::optional<SearchFailure> failure; // nothing: success
        QByteArray body;
    };
    const Row rows[] = {
        {"printf '{\"a\":1}\\n200'", {}, "{\"a\":1}"},
        {"printf '\\n200'", {}, ""}, // an empty body is a success
        {"printf '\\000\\377\\n200'", {}, QByteArray("\0\xff", 2)},
        {"echo noise >&2; printf 'x\\n200'", {}, "x"},
        {"printf 'x\\n200'; exit 28", SearchFailure::CurlTimedOut, {}},
        {"printf '\\n204'", SearchFailure::NotResponding, {}},
        {"printf 'x\\n200'; kill -9 $$", SearchFailure::Unreachable, {}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.script);
        deliveries_ = 0;
        runToTheEnd(searchWith(row.script));
        if (row.failure) {
            expectFailure(*row.failure);
            continue;
        }
        EXPECT_EQ(body_, row.body);
        EXPECT_TRUE(message_.isEmpty());
    }
}

TEST_F(NXPhotonSearchTest, a_flood_that_resists_the_request_to_end_is_killed) {
    const auto search = searchWith("exec \"$HELPER\" flood-ignoring-term");
    runToTheEnd(search);
    expectFailure(SearchFailure::TooLarge);
    EXPECT_EQ(search->task()->waitForExit(), (ChildExit{ChildExit::Kind::Signalled, SIGKILL}));
}

TEST_F(NXPhotonSearchTest, a_flood_finds_its_pipe_closed_before_it_is_waited_for) {
    // Deaf to the request to end, it ends because nobody reads, and need not be killed.
    const auto search = searchWith("trap '' TERM; exec \"$HELPER\" flood");
    runToTheEnd(search);
    expectFailure(SearchFailure::TooLarge);
    EXPECT_EQ(search->task()->waitForExit(), (ChildExit{ChildExit::Kind::Signalled, SIGPIPE}));
}

TEST_F(NXPhotonSearchTest, a_process_that_holds_the_pipe_open_keeps_nobody_waiting) {
    const auto begin = std::chrono::steady_clock::now();
    runToTheEnd(searchWith("exec \"$HELPER\" hold-pipe '{}\n200'"));
    EXPECT_EQ(body_, QByteArray("{}"));
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 15s) << "only the watchdog ended it";
    const std::vector<int> left = livingDescendants();
    ASSERT_EQ(left.size(), 1U) << "nothing held the pipe";
    ::kill(left.front(), SIGKILL);
}

TEST_F(NXPhotonSearchTest, the_exit_status_is_waited_for_after_the_output_has_ended) {
    runToTheEnd(searchWith("printf '{}\\n200'; exec >&-; \"$HELPER\" exit 0; exit 28"));
    expectFailure(SearchFailure::CurlTimedOut);
}

TEST_F(NXPhotonSearchTest, a_child_that_still_runs_when_the_time_is_up_is_stopped) {
    const auto search = searchWith("exec \"$HELPER\" hang", 100ms);
    runToTheEnd(search);
    expectFailure(SearchFailure::TimedOut);
    EXPECT_EQ(search->task()->waitForExit(), (ChildExit{ChildExit::Kind::Signalled, SIGTERM}));
    EXPECT_FALSE(search->finish(QByteArray("late"), QString()));
    QCoreApplication::processEvents();
    EXPECT_EQ(deliveries_, 1);
}

TEST_F(NXPhotonSearchTest, the_watchdog_does_not_disturb_a_finished_request) {
    const auto search = searchWith("printf '{}\\n200'", 300ms);
    runToTheEnd(search);
    std::atomic<bool> isOver = false;
    platform::runAfter(300ms, [&] { isOver = true; }); // after the watchdog, on its thread
    EXPECT_TRUE(turnUntil([&] { return isOver.load(); }));
    QCoreApplication::processEvents();
    EXPECT_EQ(deliveries_, 1);
    EXPECT_EQ(body_, QByteArray("{}"));
}

TEST_F(NXPhotonSearchTest, nothing_of_a_finished_request_waits_for_its_watchdog) {
    const int before = openDescriptors();
    for (int i = 0; i < 20; ++i) {
        deliveries_ = 0;
        runToTheEnd(searchWith("printf '{}\\n200'"));
    }
    EXPECT_TRUE(waitUntil([&] { return openDescriptors() == before; }, 5s))
        << openDescriptors() << " descriptors instead of " << before;
}

TEST_F(NXPhotonSearchTest, a_cancel_before_the_end_delivers_nothing_and_stops_the_child) {
    auto search = searchWith("exec \"$HELPER\" hang", 200ms);
    const std::weak_ptr<NXPhotonSearch> watched = search;
    search->start(address, note());
    EXPECT_TRUE(search->completion());
    const auto child = search->task();
    ASSERT_NE(child, nullptr);
    EXPECT_TRUE(child->isRunning());
    search->cancel();
    EXPECT_TRUE(search->cancelled());
    EXPECT_FALSE(search->completed());
    EXPECT_FALSE(search->completion());
    EXPECT_EQ(child->waitForExit(), (ChildExit{ChildExit::Kind::Signalled, SIGTERM}));
    EXPECT_FALSE(search->finish(QByteArray("late"), QString()));
    search.reset();
    // Gone only after the watchdog, which had nothing to do.
    EXPECT_TRUE(turnUntil([&] { return watched.expired(); }));
    EXPECT_EQ(deliveries_, 0);
}

TEST_F(NXPhotonSearchTest, a_cancel_lets_go_of_what_the_completion_holds) {
    const auto search = searchWith("exec \"$HELPER\" hang", 50ms);
    auto held = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = held;
    search->start(address, [held = std::move(held)](const auto&, const auto&) {});
    EXPECT_FALSE(watched.expired());
    search->cancel();
    EXPECT_TRUE(watched.expired());
    waitUntilNothingRuns(*search);
}

TEST_F(NXPhotonSearchTest, a_cancel_after_the_delivery_changes_nothing) {
    const auto search = searchWith("printf '{}\\n200'", 50ms);
    runToTheEnd(search);
    search->cancel();
    QCoreApplication::processEvents();
    EXPECT_EQ(deliveries_, 1);
    EXPECT_EQ(body_, QByteArray("{}"));
    EXPECT_TRUE(search->completed());
    EXPECT_TRUE(search->cancelled());
}

TEST_F(NXPhotonSearchTest, a_cancel_after_the_delivery_stops_a_child_that_still_runs) {
    const auto search = searchWith("exec \"$HELPER\" hang");
    search->start(address, note());
    EXPECT_TRUE(search->finish(QByteArray("early"), QString()));
    EXPECT_TRUE(turnUntil([&] { return deliveries_ == 1; }));
    EXPECT_TRUE(search->task()->isRunning());
    search->cancel();
    waitUntilNothingRuns(*search);
    EXPECT_EQ(deliveries_, 1);
}

TEST_F(NXPhotonSearchTest, a_request_that_was_cancelled_does_not_start) {
    const auto search = searchWith("exec \"$HELPER\" hang");
    search->cancel();
    search->start(address, note());
    EXPECT_EQ(search->task(), nullptr);
    QCoreApplication::processEvents();
    EXPECT_EQ(deliveries_, 0);
}

TEST_F(NXPhotonSearchTest, the_first_to_finish_wins_and_needs_no_completion) {
    const auto search = NXPhotonSearch::make(say);
    EXPECT_TRUE(search->finish(std::nullopt, u"first"_s));
    EXPECT_FALSE(search->finish(QByteArray("second"), QString()));
    EXPECT_TRUE(search->completed());
}

TEST_F(NXPhotonSearchTest, a_cancelled_request_cannot_be_finished) {
    const auto search = NXPhotonSearch::make(say);
    search->cancel();
    EXPECT_FALSE(search->finish(QByteArray("late"), QString()));
    EXPECT_FALSE(search->completed());
}

TEST_F(NXPhotonSearchTest, of_finishing_and_cancelling_exactly_one_is_first) {
    for (int round = 0; round < 500; ++round) {
        const auto search = NXPhotonSearch::make(say, {.program = "/nowhere/curl"});
        std::atomic<int> wins = 0;
        std::atomic<bool> go = false;
        std::vector<std::thread> racing;
        racing.reserve(3);
        for (int number = 0; number < 3; ++number) {
            racing.emplace_back([&, number] {
                while (!go) {
                }
                if (number == 0)
                    search->cancel();
                else
                    wins += search->finish(QByteArray("x"), QString());
            });
        }
        go = true;
        for (std::thread& thread : racing)
            thread.join();
        EXPECT_LE(wins, 1);
        EXPECT_EQ(search->completed(), wins == 1);
        EXPECT_TRUE(search->cancelled());
    }
}

TEST_F(NXPhotonSearchTest, requests_are_cancelled_at_any_moment_without_a_late_word) {
    for (int round = 0; round < 60; ++round) {
        const auto search = searchWith("printf '{}\\n200'", std::chrono::milliseconds(round % 7));
        search->start(address, note());
        const auto until =
            std::chrono::steady_clock::now() + std::chrono::microseconds(round * 100);
        while (std::chrono::steady_clock::now() < until)
            QCoreApplication::processEvents();
        const bool wasCompleted = search->completed();
        const int before = deliveries_;
        search->cancel();
        const bool completedFirst = search->completed();
        waitUntilNothingRuns(*search);
        EXPECT_TRUE(completedFirst || !wasCompleted);
        EXPECT_LE(deliveries_, before + (completedFirst ? 1 : 0));
    }
}

TEST_F(NXPhotonSearchTest, the_transport_is_the_systems_curl_for_22_seconds) {
    EXPECT_EQ(PhotonTransport().program, "/usr/bin/curl");
    EXPECT_EQ(PhotonTransport().patience, 22s);
}

} // namespace
