// A program that asks for more than anybody pastes.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "pasteboard_fixture.h"

using namespace pasteboard_test;

namespace {

using GreedyPasting = X11PasteboardTest;

TEST_F(GreedyPasting, a_request_for_a_thousand_targets_is_refused_and_the_next_one_served) {
    desk.pasteboard->writeString("text");
    std::vector<std::pair<std::string, std::string>> pairs;
    for (int number = 0; number < 1000; ++number) {
        pairs.emplace_back("UTF8_STRING", "P" + std::to_string(number));
    }
    program.convertMultiple(pairs);
    desk.programs = {&program};

    ASSERT_TRUE(desk.runUntil([&] { return program.paste("PAIRS").isDecided(); }));
    EXPECT_EQ(program.paste("PAIRS").state, Paste::State::refused);
    EXPECT_EQ(desk.paste(program, "UTF8_STRING").bytes, bytesOf("text"));
}

TEST_F(GreedyPasting, a_thousand_requests_at_once_are_all_answered) {
    desk.pasteboard->writeString("text");
    desk.programs = {&program};
    for (int number = 0; number < 1000; ++number) {
        // Every other one is for something that nobody has.
        program.convert(number % 2 == 0 ? "UTF8_STRING" : "T" + std::to_string(number),
                        "P" + std::to_string(number));
    }
    for (int number = 0; number < 1000; ++number) {
        const std::string property = "P" + std::to_string(number);
        ASSERT_TRUE(desk.runUntil([&] { return program.paste(property).isDecided(); })) << number;
        EXPECT_EQ(program.paste(property).state,
                  number % 2 == 0 ? Paste::State::complete : Paste::State::refused)
            << number;
    }
}

}  // namespace
