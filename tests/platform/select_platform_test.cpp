#include "platform/select_platform.h"

#include <gmock/gmock.h>

#include <vector>

namespace {

using platform::compiledSystems;
using platform::Probe;
using platform::Rank;
using platform::selectPlatform;
using platform::Session;
using platform::System;
using testing::HasSubstr;

Session x11Session() {
    return {.xDisplay = ":0", .waylandDisplay = "", .hasSessionBus = true, .isStartedByBus = false};
}

System system(const char* name, Probe (*probe)(const Session&)) {
    System made{};
    made.name = name;
    made.probe = probe;
    return made;
}

const System unfit = system("Unfit", [](const Session&) { return Probe{Rank::unsupported, "no"}; });
const System fair = system("Fair", [](const Session&) { return Probe{Rank::possible, "partly"}; });
const System alsoFair = system("Also fair", [](const Session&) {
    return Probe{Rank::possible, "too"};
});
const System good = system("Good", [](const Session&) { return Probe{Rank::best, "yes"}; });

std::string chosen(const std::vector<System>& systems) {
    const auto system = selectPlatform(systems, Session());
    return system ? system.value().name : system.error().sentence;
}

TEST(SelectPlatform, a_session_with_an_x_server_runs_on_x11) {
    const auto system = selectPlatform(compiledSystems(), x11Session());
    ASSERT_TRUE(system);
    EXPECT_EQ(system.value().name, "X11");
}

TEST(SelectPlatform, a_session_with_an_x_server_inside_wayland_still_runs_on_x11) {
    Session session = x11Session();
    session.waylandDisplay = "wayland-0";
    EXPECT_TRUE(selectPlatform(compiledSystems(), session));
}

TEST(SelectPlatform, a_session_without_a_display_is_an_error_in_one_sentence) {
    const auto system = selectPlatform(compiledSystems(), Session());
    ASSERT_FALSE(system);
    EXPECT_EQ(system.error().kind, base::ErrorKind::unavailable);
    EXPECT_EQ(system.error().sentence,
              "Lumaframe needs a graphical session, and there is none here (X11: $DISPLAY is not "
              "set).");
}

TEST(SelectPlatform, the_best_rank_wins_wherever_it_stands) {
    EXPECT_EQ(chosen({unfit, fair, good}), "Good");
    EXPECT_EQ(chosen({good, fair}), "Good");
}

TEST(SelectPlatform, of_two_that_fit_equally_the_preferred_one_wins) {
    EXPECT_EQ(chosen({fair, alsoFair}), "Fair");
}

TEST(SelectPlatform, when_none_fits_every_reason_is_given) {
    EXPECT_THAT(chosen({unfit, unfit}), HasSubstr("(Unfit: no; Unfit: no)"));
}

}  // namespace
