#include "base/alive.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

TEST(Alive, a_callback_runs_as_long_as_its_owner_lives) {
    auto alive = std::make_unique<base::Alive>();
    int calls = 0;
    const std::function<void()> callback = alive->guard([&] { ++calls; });
    callback();
    callback();
    EXPECT_EQ(calls, 2);
    alive.reset();
    callback();
    EXPECT_EQ(calls, 2);
}

TEST(Alive, the_arguments_go_along) {
    const base::Alive alive;
    std::string received;
    const std::function<void(const std::string&, int)> callback = alive.guard(
        [&](const std::string& text, int number) { received = text + std::to_string(number); });
    callback("a", 7);
    EXPECT_EQ(received, "a7");
}

TEST(Alive, an_owner_may_end_inside_of_its_callback) {
    auto alive = std::make_unique<base::Alive>();
    int calls = 0;
    const std::function<void()> callback = alive->guard([&] {
        alive.reset();
        ++calls;
    });
    callback();
    callback();
    EXPECT_EQ(calls, 1);
}
