#include "TurnUntil.h"
#include "platform/Threads.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

namespace {

// An application for one test.
class MainQueueTest : public testing::Test {
protected:
    int count_ = 0;
    std::unique_ptr<QCoreApplication> application_ =
        std::make_unique<QCoreApplication>(count_, nullptr);
};

TEST_F(MainQueueTest, work_runs_later_on_the_main_thread) {
    std::thread::id ranOn;
    platform::postToMain([&] { ranOn = std::this_thread::get_id(); });
    EXPECT_EQ(ranOn, std::thread::id()) << "ran inside the call";
    EXPECT_TRUE(turnUntil([&] { return ranOn == std::this_thread::get_id(); }));
}

TEST_F(MainQueueTest, work_from_another_thread_wakes_a_sleeping_event_loop) {
    std::thread poster;
    QEventLoop loop;
    platform::postToMain([&] {
        // The loop is known to run now, and has nothing else to do when this returns.
        poster = std::thread([&] { platform::postToMain([&] { loop.quit(); }); });
    });
    loop.exec();
    poster.join();
}

TEST_F(MainQueueTest, work_runs_in_the_order_of_posting) {
    std::vector<int> order;
    for (int number = 0; number < 1000; ++number)
        platform::postToMain([&order, number] { order.push_back(number); });
    EXPECT_TRUE(turnUntil([&] { return order.size() == 1000; }));
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST_F(MainQueueTest, work_of_several_threads_all_runs_each_in_its_order) {
    constexpr int threads = 4;
    constexpr int each = 2000;
    std::vector<std::vector<int>> orders(threads); // touched by the main thread alone
    std::vector<std::thread> posters;
    for (std::size_t thread = 0; thread < threads; ++thread) {
        posters.emplace_back([&orders, thread] {
            for (int number = 0; number < each; ++number)
                platform::postToMain(
                    [&orders, thread, number] { orders[thread].push_back(number); });
        });
    }
    EXPECT_TRUE(turnUntil([&] {
        return std::all_of(orders.begin(), orders.end(),
                           [](const auto& order) { return order.size() == each; });
    }));
    for (std::thread& poster : posters)
        poster.join();
    for (const std::vector<int>& order : orders)
        EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST_F(MainQueueTest, work_posted_by_work_runs_after_it) {
    std::vector<int> order;
    platform::postToMain([&] {
        platform::postToMain([&] { order.push_back(2); });
        order.push_back(1);
    });
    EXPECT_TRUE(turnUntil([&] { return order.size() == 2; }));
    EXPECT_EQ(order, (std::vector{1, 2}));
}

TEST_F(MainQueueTest, a_dialog_inside_work_does_not_hold_up_the_work_that_follows) {
    std::vector<int> order;
    platform::postToMain([&] {
        QEventLoop dialog;
        platform::postToMain([&] {
            order.push_back(2);
            dialog.quit();
        });
        dialog.exec(); // would never end
        order.push_back(3);
    });
    platform::postToMain([&] { order.push_back(1); });
    EXPECT_TRUE(turnUntil([&] { return order.size() == 3; }));
    EXPECT_EQ(order, (std::vector{1, 2, 3}));
}

TEST_F(MainQueueTest, work_is_destroyed_on_the_main_thread_once_it_has_run) {
    std::thread::id destroyedOn;
    auto held = std::shared_ptr<int>(new int(0), [&](int* number) {
        destroyedOn = std::this_thread::get_id();
        delete number;
    });
    std::thread([held = std::move(held)]() mutable {
        platform::postToMain([inner = std::move(held)] {});
    }).join();
    EXPECT_TRUE(turnUntil([&] { return destroyedOn != std::thread::id(); }));
    EXPECT_EQ(destroyedOn, std::this_thread::get_id());
}

TEST_F(MainQueueTest, the_end_of_the_application_drops_what_has_not_run) {
    int ran = 0;
    auto waiting = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = waiting;
    platform::postToMain([&ran, waiting = std::move(waiting)] { ++ran; });
    application_.reset();
    EXPECT_TRUE(watched.expired());

    auto late = std::make_shared<int>(0);
    const std::weak_ptr<int> lateWatched = late;
    platform::postToMain([&ran, late = std::move(late)] { ++ran; });
    EXPECT_TRUE(lateWatched.expired());

    application_ = std::make_unique<QCoreApplication>(count_, nullptr);
    bool again = false;
    platform::postToMain([&] { again = true; });
    EXPECT_TRUE(turnUntil([&] { return again; }));
    EXPECT_EQ(ran, 0);
}

TEST_F(MainQueueTest, what_is_dropped_may_post_when_it_is_destroyed) {
    const auto poster = [](void*) { platform::postToMain([] {}); };
    platform::postToMain([held = std::shared_ptr<void>(nullptr, poster)] {});
    application_.reset();
    platform::postToMain([held = std::shared_ptr<void>(nullptr, poster)] {});
}

TEST_F(MainQueueTest, threads_may_post_while_the_application_ends) {
    std::atomic<bool> enough = false;
    std::atomic<int> posted = 0;
    std::thread poster([&] {
        while (!enough) {
            platform::postToMain([] {});
            ++posted;
        }
    });
    for (int round = 0; round < 20; ++round) {
        const int before = posted;
        EXPECT_TRUE(turnUntil([&] { return posted > before; }));
        application_.reset();
        application_ = std::make_unique<QCoreApplication>(count_, nullptr);
    }
    enough = true;
    poster.join();
}

// In a program of its own, because here there has been an application already.
TEST(MainQueueDeathTest, work_posted_before_there_is_an_application_waits_for_it) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            int ran = 0;
            platform::postToMain([&] { ran += 1; });
            platform::postToMain([&] { ran += 10; });
            int count = 0;
            const QCoreApplication application(count, nullptr);
            turnUntil([&] { return ran == 11; });
            std::_Exit(ran);
        },
        testing::ExitedWithCode(11), "");
}

} // namespace
