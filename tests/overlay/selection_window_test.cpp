#include "overlay/selection_window.h"

#include <gmock/gmock.h>

#include "overlay_fixture.h"

namespace {

using overlay::KeyVerdict;
using testing::ElementsAre;
using testing::IsEmpty;

class SelectionWindowTest : public OverlayFixture {};

TEST_F(SelectionWindowTest, is_a_transparent_panel_above_everything) {
    open();
    const overlay::PanelConfiguration& panel = surface().configuration;
    EXPECT_EQ(panel.styleMask, 0x8080U);
    EXPECT_EQ(panel.backing, 2U);
    EXPECT_FALSE(panel.isDeferred);
    EXPECT_FALSE(panel.isOpaque);
    EXPECT_EQ(panel.level, 1000);
    EXPECT_FALSE(panel.ignoresMouseEvents);
    EXPECT_EQ(panel.collectionBehavior, 0x141U);
    EXPECT_FALSE(panel.hidesOnDeactivate);
    EXPECT_FALSE(panel.isReleasedWhenClosed);
    EXPECT_EQ(panel.trackingAreaOptions, 0x283U);
}

TEST_F(SelectionWindowTest, covers_the_display_it_is_for) {
    useTwoDisplays();
    open();
    EXPECT_EQ(surface(1).screen->frame, (base::Rect{{1920, 56}, {1280, 1024}}));
    surface(1).press({0, 0});
    surface(1).drag({100, 100});
    EXPECT_EQ(surface(1).presentations.at(0).changed, (base::Rect{{0, 0}, {1280, 1024}}));
}

TEST_F(SelectionWindowTest, escape_closes_the_overlay_at_once) {
    useTwoDisplays();
    open();
    EXPECT_EQ(surface(1).key(53), KeyVerdict::handled);
    EXPECT_THAT(manager.windows(), IsEmpty());
    EXPECT_EQ(calls.count(closedLine), 1);
}

TEST_F(SelectionWindowTest, the_cancel_command_closes_the_overlay_at_once) {
    open();
    surface().cancel();
    EXPECT_THAT(manager.windows(), IsEmpty());
    EXPECT_EQ(calls.count(closedLine), 1);
}

TEST_F(SelectionWindowTest, space_toggles_its_own_view_only) {
    useTwoDisplays();
    open();
    EXPECT_EQ(surface(0).key(49), KeyVerdict::handled);
    EXPECT_TRUE(state(0).isWindowMode);
    EXPECT_FALSE(state(1).isWindowMode);
    EXPECT_THAT(surface(1).presentations, IsEmpty());
    surface(0).key(49);
    EXPECT_FALSE(state(0).isWindowMode);
}

TEST_F(SelectionWindowTest, every_other_key_is_left_to_the_system) {
    open();
    for (const std::uint32_t key : {0U, 36U, 48U, overlay::unknownKeyCode}) {
        EXPECT_EQ(surface().key(key), KeyVerdict::unhandled);
    }
    EXPECT_THAT(calls.calls(), IsEmpty());
}

TEST_F(SelectionWindowTest, without_a_view_input_has_no_effect_and_escape_still_closes) {
    open();
    manager.windows().at(0)->setContentView(nullptr);
    surface().enter();
    surface().exit();
    surface().press({1, 1});
    surface().drag({9, 9});
    surface().move({9, 9});
    surface().release({9, 9});
    EXPECT_EQ(surface().key(49), KeyVerdict::handled);
    queue.runAll();
    EXPECT_THAT(calls.calls(), IsEmpty());
    surface().key(53);
    EXPECT_THAT(manager.windows(), IsEmpty());
}

}  // namespace
