#include "platform/x11/x11_displays.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "desktop/color_profile.h"
#include "desktop/desktop.h"
#include "doubles/manual_main_queue.h"

using base::Rect;
using desktop::ColorProfile;
using desktop::Desktop;
using desktop::DesktopOptions;
using platform::x11::Connection;
using platform::x11::DisplayRole;
using platform::x11::mergeMirrored;
using platform::x11::Monitor;
using platform::x11::NativeRect;
using platform::x11::X11Displays;

namespace {

DesktopOptions bare(std::vector<desktop::Output> outputs) {
    DesktopOptions options;
    options.outputs = std::move(outputs);
    options.windowManager = desktop::WindowManager::none;
    return options;
}

struct DisplaysRig {
    explicit DisplaysRig(std::vector<desktop::Output> outputs)
        : desktop(bare(std::move(outputs))),
          connection(std::move(Connection::open(desktop.displayName()).value())),
          displays(*connection, queue, [this](const std::string& name) {
              const auto known = scales.find(name);
              return known == scales.end() ? 1.0 : known->second;
          }) {}

    void turn() {
        connection->dispatchPendingEvents();
        queue.runAll();
    }
    void setProfile(const std::string& property, const std::vector<std::uint8_t>& bytes) {
        auto& client = desktop.client();
        xcb_change_property(client.get(), XCB_PROP_MODE_REPLACE, client.root(),
                            client.atom(property), XCB_ATOM_CARDINAL, 8,
                            static_cast<std::uint32_t>(bytes.size()), bytes.data());
        client.synchronize();
    }

    std::map<std::string, double> scales;
    Desktop desktop;
    doubles::ManualMainQueue queue;
    std::unique_ptr<Connection> connection;
    X11Displays displays;
};

std::vector<std::uint8_t> profileNamed(const std::string& name, double gamma = 2.2) {
    return ColorProfile{.descriptions = {{"en", name}}, .gamma = gamma}.bytes();
}

Monitor monitor(std::size_t index, NativeRect native, DisplayRole role = DisplayRole::secondary) {
    return {static_cast<std::uint32_t>(index + 1), "M" + std::to_string(index), native, role,
            index};
}

}  // namespace

TEST(X11Displays, one_display_is_the_whole_screen) {
    DisplaysRig rig({{0, 0, 1024, 768}});
    const auto screens = rig.displays.screens();
    ASSERT_EQ(screens.size(), 1U);
    EXPECT_EQ(screens[0].frame, (Rect{{0, 0}, {1024, 768}}));
    EXPECT_EQ(screens[0].backingScaleFactor, 1);
    EXPECT_EQ(screens[0].colorSpace, nullptr);
}

TEST(X11Displays, each_display_has_its_offset_and_the_scale_of_its_name) {
    DisplaysRig rig({{0, 0, 1024, 768}, {1024, 100, 800, 600}});
    rig.scales = {{"DUMMY1", 2.0}};
    const auto screens = rig.displays.screens();
    ASSERT_EQ(screens.size(), 2U);
    EXPECT_EQ(screens[0].frame, (Rect{{0, 0}, {1024, 768}}));
    EXPECT_EQ(screens[1].frame, (Rect{{1024, 368}, {400, 300}}));
    EXPECT_EQ(screens[1].backingScaleFactor, 2);
    EXPECT_NE(screens[0].displayID, screens[1].displayID);
    EXPECT_EQ(rig.displays.layout().displays()[1].name, "DUMMY1");
}

TEST(X11Displays, the_primary_comes_first) {
    DisplaysRig rig({{0, 0, 1024, 768}, {1024, 0, 800, 600}});
    rig.desktop.server().configure({"--output", "DUMMY1", "--primary"});
    ASSERT_EQ(rig.displays.screens().size(), 2U);
    EXPECT_EQ(rig.displays.layout().displays()[0].name, "DUMMY1");
    EXPECT_EQ(rig.displays.screens()[1].frame, (Rect{{-1024, -168}, {1024, 768}}));
    rig.turn();
}

TEST(X11Displays, a_scale_that_makes_no_sense_is_one) {
    DisplaysRig rig({{0, 0, 1024, 768}});
    const std::string name = rig.displays.readLayout().displays()[0].name;
    for (const double scale : {0.0, -2.0, std::nan(""), HUGE_VAL}) {
        rig.scales[name] = scale;
        EXPECT_EQ(rig.displays.screens()[0].backingScaleFactor, 1) << scale;
    }
}

TEST(X11Displays, a_scale_below_one_is_one_since_displays_that_touch_would_overlap) {
    DisplaysRig rig({{0, 0, 1024, 768}, {1024, 0, 800, 600}});
    rig.scales = {{"DUMMY0", 0.75}, {"DUMMY1", 0.5}};
    const auto screens = rig.displays.screens();
    EXPECT_EQ(screens[0].backingScaleFactor, 1);
    EXPECT_EQ(screens[1].backingScaleFactor, 1);
    EXPECT_TRUE(base::intersection(screens[0].frame, screens[1].frame).isEmpty());
}

TEST(X11Displays, a_change_is_told_once_and_only_when_a_display_really_changed) {
    DisplaysRig rig({{0, 0, 1024, 768}, {1024, 0, 800, 600}});
    int changes = 0;
    rig.displays.setChangeHandler([&] { ++changes; });
    rig.desktop.server().configure({"--output", "DUMMY1", "--off"});
    ASSERT_TRUE(desktop::waitUntil([&] {
        rig.turn();
        return changes > 0;
    }));
    EXPECT_EQ(rig.displays.screens().size(), 1U);
    (void)rig.connection->serverTime();
    rig.turn();
    EXPECT_EQ(changes, 1);

    // A larger screen around the same displays is announced by the server all the same.
    rig.desktop.server().configure({"--fb", "2500x1400"});
    ASSERT_TRUE(desktop::waitUntil([&] {
        rig.connection->dispatchPendingEvents();
        return rig.queue.pendingCount() > 0;
    }));
    rig.turn();
    EXPECT_EQ(changes, 1);

    rig.displays.setChangeHandler({});
    rig.desktop.server().arrange({{0, 0, 1024, 768}, {1024, 0, 800, 600}});
    ASSERT_TRUE(desktop::waitUntil([&] {
        rig.turn();
        return rig.displays.layout().displays().size() == 2;
    }));
    EXPECT_EQ(changes, 1);
}

TEST(X11Displays, a_change_that_was_queued_before_the_end_of_the_displays_is_forgotten) {
    DesktopOptions options = bare({{0, 0, 1024, 768}, {1024, 0, 800, 600}});
    doubles::ManualMainQueue queue;
    Desktop desktop(options);
    auto connection = std::move(Connection::open(desktop.displayName()).value());
    auto displays =
        std::make_unique<X11Displays>(*connection, queue, [](const std::string&) { return 1.0; });
    displays->setChangeHandler([] { ADD_FAILURE() << "called after its end"; });
    desktop.server().configure({"--output", "DUMMY1", "--off"});
    ASSERT_TRUE(desktop::waitUntil([&] {
        connection->dispatchPendingEvents();
        return queue.pendingCount() > 0;
    }));
    displays.reset();
    queue.runAll();
}

TEST(X11Displays, without_any_monitor_the_screen_as_it_is_now_is_one_display) {
    DisplaysRig rig({{0, 0, 1024, 768}, {1024, 0, 800, 600}});
    rig.desktop.server().configure(
        {"--output", "DUMMY0", "--off", "--output", "DUMMY1", "--off", "--fb", "900x700"});
    ASSERT_EQ(rig.displays.screens().size(), 1U);
    EXPECT_EQ(rig.displays.screens()[0].frame, (Rect{{0, 0}, {900, 700}}));
    rig.turn();
}

TEST(X11Displays, what_a_monitor_claims_beyond_the_screen_is_not_there) {
    DisplaysRig rig({{0, 0, 1024, 768}, {1024, 0, 800, 600}});
    rig.desktop.server().configure(
        {"--setmonitor", "BEYOND", "900/300x900/300+1024+200", "DUMMY1"});
    rig.desktop.server().configure({"--setmonitor", "FAR", "900/300x900/300+5000+200", "none"});
    const auto& displays = rig.displays.readLayout().displays();
    ASSERT_EQ(displays.size(), 2U);
    EXPECT_EQ(displays[0].native, (NativeRect{0, 0, 1024, 768}));
    EXPECT_EQ(displays[1].native, (NativeRect{1024, 200, 800, 568}));
    EXPECT_EQ(displays[1].name, "BEYOND");
    rig.turn();
}

TEST(X11Displays, mirrored_outputs_are_one_display) {
    DisplaysRig rig({{0, 0, 1024, 768}, {0, 0, 1024, 768}});
    ASSERT_EQ(rig.displays.screens().size(), 1U);
    EXPECT_EQ(rig.displays.screens()[0].frame, (Rect{{0, 0}, {1024, 768}}));
}

TEST(X11Displays, a_profile_belongs_to_the_display_of_its_number) {
    DisplaysRig rig({{0, 0, 1024, 768}, {1024, 0, 800, 600}});
    rig.setProfile("_ICC_PROFILE_1", profileNamed("Second"));
    auto screens = rig.displays.screens();
    ASSERT_EQ(screens.size(), 2U);
    EXPECT_EQ(screens[0].colorSpace, nullptr);
    ASSERT_NE(screens[1].colorSpace, nullptr);
    EXPECT_EQ(screens[1].colorSpace->iccProfile, profileNamed("Second"));
    EXPECT_EQ(screens[1].colorSpace->name, "Second");
    rig.setProfile("_ICC_PROFILE", profileNamed("First"));
    screens = rig.displays.screens();
    ASSERT_NE(screens[0].colorSpace, nullptr);
    EXPECT_EQ(screens[0].colorSpace->name, "First");
    EXPECT_EQ(screens[1].colorSpace->name, "Second");
}

TEST(X11Displays, a_profile_that_is_broken_is_no_profile) {
    DisplaysRig rig({{0, 0, 1024, 768}});
    rig.setProfile("_ICC_PROFILE", profileNamed("First"));
    ASSERT_NE(rig.displays.screens()[0].colorSpace, nullptr);
    rig.setProfile("_ICC_PROFILE", {1, 2, 3});
    EXPECT_EQ(rig.displays.screens()[0].colorSpace, nullptr);
    rig.setProfile("_ICC_PROFILE", {});
    EXPECT_EQ(rig.displays.screens()[0].colorSpace, nullptr);
    auto& client = rig.desktop.client();
    const std::uint32_t number = 7;
    xcb_change_property(client.get(), XCB_PROP_MODE_REPLACE, client.root(),
                        client.atom("_ICC_PROFILE"), XCB_ATOM_CARDINAL, 32, 1, &number);
    client.synchronize();
    EXPECT_EQ(rig.displays.screens()[0].colorSpace, nullptr);
}

TEST(X11Displays, a_profile_without_a_name_is_that_of_its_monitor) {
    DisplaysRig rig({{0, 0, 1024, 768}, {1024, 0, 800, 600}});
    rig.setProfile("_ICC_PROFILE_1", profileNamed(""));
    EXPECT_EQ(rig.displays.screens()[1].colorSpace->name, "Profile of DUMMY1");
}

TEST(X11Displays, profiles_that_differ_have_names_that_differ) {
    DisplaysRig rig({{0, 0, 1024, 768}, {1024, 0, 800, 600}});
    rig.setProfile("_ICC_PROFILE", profileNamed("Model 27", 2.2));
    rig.setProfile("_ICC_PROFILE_1", profileNamed("Model 27", 2.4));
    auto screens = rig.displays.screens();
    EXPECT_EQ(screens[0].colorSpace->name, "Model 27");
    EXPECT_EQ(screens[1].colorSpace->name, "Model 27 (DUMMY1)");
    EXPECT_EQ(screens[1].colorSpace->iccProfile, profileNamed("Model 27", 2.4));
    rig.setProfile("_ICC_PROFILE_1", profileNamed("Model 27", 2.2));
    screens = rig.displays.screens();
    EXPECT_EQ(screens[1].colorSpace->name, "Model 27");
}

TEST(MergeMirrored, a_display_inside_of_another_one_is_a_part_of_it) {
    const auto merged =
        mergeMirrored({monitor(0, {0, 0, 800, 600}, DisplayRole::primary),
                       monitor(1, {0, 0, 1024, 768}), monitor(2, {1024, 0, 640, 480})});
    ASSERT_EQ(merged.size(), 2U);
    EXPECT_EQ(merged[0].name, "M1");
    EXPECT_EQ(merged[0].role, DisplayRole::primary);
    EXPECT_EQ(merged[1].name, "M2");
}

TEST(MergeMirrored, of_equal_ones_the_first_stays_and_displays_that_overlap_in_part_both_do) {
    const auto merged = mergeMirrored({monitor(0, {0, 0, 800, 600}), monitor(1, {0, 0, 800, 600}),
                                       monitor(2, {400, 0, 800, 600})});
    ASSERT_EQ(merged.size(), 2U);
    EXPECT_EQ(merged[0].name, "M0");
    EXPECT_EQ(merged[1].name, "M2");
}
