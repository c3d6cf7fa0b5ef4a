#include "platform/qt/qt_main_queue.h"

#include <gmock/gmock.h>

#include <memory>
#include <thread>
#include <vector>

#include "platform/qt/qt_session.h"

namespace {

using namespace std::chrono_literals;
using platform::qt::QtMainQueue;
using qt_tests::QtSession;
using qt_tests::runUntil;
using testing::ElementsAre;
using testing::SizeIs;

class MainQueue : public testing::Test {
  protected:
    MainQueue() { QtSession::shared(); }
};

TEST_F(MainQueue, tasks_run_later_and_in_their_order) {
    QtMainQueue queue;
    std::vector<int> ran;
    queue.post([&] {
        ran.push_back(1);
        queue.post([&] { ran.push_back(3); });
    });
    queue.post([&] { ran.push_back(2); });
    EXPECT_TRUE(ran.empty());
    EXPECT_TRUE(runUntil([&] { return ran.size() == 3; }));
    EXPECT_THAT(ran, ElementsAre(1, 2, 3));
}

TEST_F(MainQueue, tasks_of_other_threads_run_on_the_main_thread_each_threads_in_order) {
    QtMainQueue queue;
    std::vector<std::vector<int>> ran(4);
    bool isOnMainThread = true;
    std::vector<std::thread> threads;
    for (std::size_t thread = 0; thread < ran.size(); ++thread) {
        threads.emplace_back([&, thread] {
            for (int task = 0; task < 250; ++task) {
                queue.post([&, thread, task, main = std::this_thread::get_id()] {
                    isOnMainThread = isOnMainThread && main != std::this_thread::get_id();
                    ran[thread].push_back(task);
                });
            }
        });
    }
    const auto isDone = [&] {
        return std::all_of(ran.begin(), ran.end(),
                           [](const auto& list) { return list.size() == 250; });
    };
    EXPECT_TRUE(runUntil(isDone));
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_TRUE(isOnMainThread);
    for (const auto& list : ran) {
        EXPECT_TRUE(std::is_sorted(list.begin(), list.end()));
    }
}

TEST_F(MainQueue, nothing_runs_after_its_end_and_what_tasks_hold_is_released) {
    const auto held = std::make_shared<int>(0);
    bool hasRun = false;
    {
        QtMainQueue queue;
        queue.post([&hasRun, held] { hasRun = true; });
        queue.postAfter(1ms, [&hasRun, held] { hasRun = true; });
    }
    EXPECT_EQ(held.use_count(), 1);
    QtMainQueue next;
    bool isOver = false;
    next.postAfter(20ms, [&] { isOver = true; });
    EXPECT_TRUE(runUntil([&] { return isOver; }));
    EXPECT_FALSE(hasRun);
}

TEST_F(MainQueue, a_delayed_task_runs_once_and_not_before_its_time) {
    QtMainQueue queue;
    const auto start = std::chrono::steady_clock::now();
    int count = 0;
    std::chrono::steady_clock::duration taken{};
    queue.postAfter(100ms, [&] {
        ++count;
        taken = std::chrono::steady_clock::now() - start;
    });
    EXPECT_TRUE(runUntil([&] { return count > 0; }));
    EXPECT_GE(taken, 99ms);
    bool isOver = false;
    queue.postAfter(150ms, [&] { isOver = true; });
    EXPECT_TRUE(runUntil([&] { return isOver; }));
    EXPECT_EQ(count, 1);
}

}  // namespace
