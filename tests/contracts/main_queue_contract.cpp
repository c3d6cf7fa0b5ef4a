#include "contracts/main_queue_contract.h"

#include <memory>
#include <string>
#include <thread>

namespace contracts {
namespace {

using namespace std::chrono_literals;

TEST_P(MainQueueContract, a_task_never_runs_inside_of_the_call) {
    bool hasRun = false;
    queue_.post([&] { hasRun = true; });
    EXPECT_FALSE(hasRun);
    EXPECT_TRUE(world_->runUntil([&] { return hasRun; }));
}

TEST_P(MainQueueContract, tasks_run_in_the_order_of_the_calls) {
    std::string order;
    queue_.post([&] {
        order += "a";
        queue_.post([&] { order += "d"; });
        order += "b";
    });
    queue_.post([&] { order += "c"; });
    EXPECT_TRUE(world_->runUntil([&] { return order.size() >= 4; }));
    EXPECT_EQ(order, "abcd");
}

TEST_P(MainQueueContract, a_task_of_another_thread_runs_on_this_one) {
    std::thread::id ranOn;
    std::thread other([&] { queue_.post([&] { ranOn = std::this_thread::get_id(); }); });
    EXPECT_TRUE(world_->runUntil([&] { return ranOn != std::thread::id(); }));
    other.join();
    EXPECT_EQ(ranOn, std::this_thread::get_id());
}

TEST_P(MainQueueContract, a_delayed_task_does_not_run_before_its_time) {
    const auto begin = world_->now();
    std::chrono::nanoseconds passed{};
    queue_.postAfter(50ms, [&] { passed = world_->now() - begin; });
    EXPECT_TRUE(world_->runUntil([&] { return passed > 0ns; }));
    EXPECT_GE(passed, 50ms);
}

TEST_P(MainQueueContract, delayed_tasks_run_in_the_order_of_their_moments) {
    std::string order;
    queue_.postAfter(60ms, [&] { order += "c"; });
    queue_.postAfter(20ms, [&] { order += "b"; });
    queue_.post([&] { order += "a"; });
    EXPECT_TRUE(world_->runUntil([&] { return order.size() >= 3; }));
    EXPECT_EQ(order, "abc");
}

TEST_P(MainQueueContract, a_delay_of_nothing_is_still_a_later_turn) {
    bool hasRun = false;
    queue_.postAfter(0ms, [&] { hasRun = true; });
    EXPECT_FALSE(hasRun);
    EXPECT_TRUE(world_->runUntil([&] { return hasRun; }));
}

TEST_P(MainQueueContract, every_task_runs_once_and_lets_go_of_what_it_holds) {
    int runs = 0;
    auto held = std::make_shared<int>(0);
    const std::weak_ptr<int> watched = held;
    queue_.post([&runs, held] { ++runs; });
    queue_.postAfter(1ms, [&runs, held] { ++runs; });
    held.reset();
    bool isOver = false;
    queue_.postAfter(40ms, [&] { isOver = true; });
    EXPECT_TRUE(world_->runUntil([&] { return isOver; }));
    EXPECT_EQ(runs, 2);
    EXPECT_TRUE(watched.expired());
}

}  // namespace
}  // namespace contracts
