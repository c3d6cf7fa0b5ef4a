#include "contracts/overlay_surface_contract.h"

namespace contracts {
namespace {

using Reports = std::vector<std::string>;

TEST_P(OverlaySurfaceContract, the_mouse_is_reported_in_view_space) {
    const auto surface = make();
    surface->makeKeyAndOrderFront();
    world_->move({5, 6});
    world_->press({5, 6});
    world_->drag({40, 60});
    world_->release({40, 60});
    EXPECT_EQ(input_.reports, (Reports{"moved 5 6", "down 5 6", "dragged 40 60", "up 40 60"}));
}

TEST_P(OverlaySurfaceContract, keys_come_with_their_virtual_key_codes) {
    const auto surface = make();
    surface->makeKeyAndOrderFront();
    world_->tapSpace();
    EXPECT_EQ(input_.reports, Reports{"key 49"});
}

TEST_P(OverlaySurfaceContract, nothing_is_reported_before_it_is_shown_or_after_it_was_closed) {
    const auto surface = make();
    world_->move({5, 6});
    world_->tapSpace();
    EXPECT_TRUE(input_.reports.empty());
    surface->makeKeyAndOrderFront();
    surface->close();
    world_->move({15, 16});
    world_->press({15, 16});
    world_->release({15, 16});
    world_->tapSpace();
    EXPECT_TRUE(input_.reports.empty());
}

TEST_P(OverlaySurfaceContract, destroying_a_surface_closes_it) {
    auto surface = make();
    surface->makeKeyAndOrderFront();
    surface.reset();
    world_->move({5, 6});
    EXPECT_TRUE(input_.reports.empty());
}

TEST_P(OverlaySurfaceContract, a_surface_may_be_destroyed_by_its_own_report) {
    auto surface = make();
    surface->makeKeyAndOrderFront();
    input_.reaction = [&] { surface.reset(); };
    world_->move({5, 6});
    world_->move({7, 8});
    EXPECT_EQ(input_.reports, Reports{"moved 5 6"});
}

TEST_P(OverlaySurfaceContract, a_longer_text_is_wider_and_as_high) {
    const auto surface = make();
    const overlay::Font font{10, overlay::FontWeight::medium};
    const base::Size shorter = surface->measure("40 x 0", font);
    const base::Size longer = surface->measure("4000 x 2000", font);
    EXPECT_GT(shorter.width, 0);
    EXPECT_LT(shorter.width, longer.width);
    EXPECT_EQ(shorter.height, longer.height);
}

TEST_P(OverlaySurfaceContract, a_surface_knows_the_screen_it_was_made_for) {
    const auto surface = make();
    ASSERT_TRUE(surface->screen().has_value());
    EXPECT_EQ(surface->screen()->displayID, world_->screen().displayID);
    EXPECT_EQ(surface->screen()->frame, world_->screen().frame);
}

TEST_P(OverlaySurfaceContract, a_drawing_is_taken_at_any_time) {
    const auto surface = make();
    const std::vector<overlay::DrawingStep> steps{
        overlay::FillStep{{{0, 0}, {100, 100}}, 5, {0, 0, 0, 0.4}},
        overlay::TextStep{"40 x 0", {10, 10}, {}, {}}};
    surface->present(steps, {{0, 0}, {100, 100}});
    surface->makeKeyAndOrderFront();
    surface->present({}, {{0, 0}, {100, 100}});
    surface->close();
    surface->present(steps, {{0, 0}, {100, 100}});
    world_->move({5, 6});
    EXPECT_TRUE(input_.reports.empty());
}

}  // namespace
}  // namespace contracts
