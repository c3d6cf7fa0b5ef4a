#include "platform/macos/main_thread_completion.h"

#include <gtest/gtest.h>

#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "base/alive.h"

namespace {

using platform::macos::MainThreadCompletion;

/// A main queue that runs when the test says so; the thread of the test is the main one.
class Queue {
  public:
    static void post(std::function<void()> task) {
        const std::lock_guard lock(mutex());
        tasks().push_back(std::move(task));
    }
    static void runAll() {
        while (true) {
            std::function<void()> task;
            {
                const std::lock_guard lock(mutex());
                if (tasks().empty()) {
                    return;
                }
                task = std::move(tasks().front());
                tasks().erase(tasks().begin());
            }
            task();
        }
    }

  private:
    static std::vector<std::function<void()>>& tasks() {
        static std::vector<std::function<void()>> list;
        return list;
    }
    static std::mutex& mutex() {
        static std::mutex one;
        return one;
    }
};

/// Notes on which thread it goes.
struct Witness {
    explicit Witness(std::optional<std::thread::id>& place) : gone(&place) {}
    ~Witness() { *gone = std::this_thread::get_id(); }
    Witness(const Witness&) = delete;
    Witness& operator=(const Witness&) = delete;
    std::optional<std::thread::id>* gone;
};

void onAnotherThread(std::function<void()> task) {
    std::thread([task = std::move(task)]() mutable {
        task();
        task = nullptr;
    }).join();
}

TEST(MainThreadCompletion, runs_on_the_main_thread_in_a_later_turn_with_what_it_was_given) {
    std::optional<std::thread::id> place;
    std::string given;
    {
        const MainThreadCompletion<std::string> finish(Queue::post, [&](const std::string& text) {
            place = std::this_thread::get_id();
            given = text;
        });
        onAnotherThread([&] { finish("late"); });
    }
    EXPECT_FALSE(place);
    Queue::runAll();
    EXPECT_EQ(place, std::this_thread::get_id());
    EXPECT_EQ(given, "late");
}

TEST(MainThreadCompletion, whose_owner_has_gone_does_nothing_however_late_it_is) {
    int count = 0;
    auto owner = std::make_unique<base::Alive>();
    {
        const MainThreadCompletion<> finish(Queue::post, owner->guard([&] { ++count; }));
        finish();
        owner.reset();
        Queue::runAll();
        onAnotherThread([&] { finish(); });
    }
    Queue::runAll();
    EXPECT_EQ(count, 0);
}

TEST(MainThreadCompletion, that_never_runs_keeps_nobody_waiting_and_goes_on_the_main_thread) {
    std::optional<std::thread::id> gone;
    {
        std::optional<MainThreadCompletion<>> finish(
            std::in_place, Queue::post, [kept = std::make_shared<Witness>(gone)] { (void)kept; });
        onAnotherThread([last = *std::exchange(finish, std::nullopt)] { (void)last; });
    }
    Queue::runAll();
    EXPECT_EQ(gone, std::this_thread::get_id());
}

TEST(MainThreadCompletion, that_has_run_lets_go_on_the_main_thread_of_what_it_held) {
    std::optional<std::thread::id> gone;
    {
        std::optional<MainThreadCompletion<int>> finish(
            std::in_place, Queue::post,
            [kept = std::make_shared<Witness>(gone)](int) { (void)kept; });
        onAnotherThread([last = *std::exchange(finish, std::nullopt)] { last(7); });
    }
    Queue::runAll();
    EXPECT_EQ(gone, std::this_thread::get_id());
}

}  // namespace
