#include <gtest/gtest.h>
#include <unistd.h>

#include "desktop/x_resources.h"
#include "platform/x11/surface_rig.h"

using desktop::DesktopOptions;
using surface_rig::RecordingInput;
using surface_rig::Rig;

namespace {

DesktopOptions bare() {
    DesktopOptions options;
    options.outputs = {{0, 0, 800, 600}};
    options.windowManager = desktop::WindowManager::none;
    return options;
}

}  // namespace

class OverlaySurfaceUnder : public testing::TestWithParam<desktop::Compositor> {};

TEST_P(OverlaySurfaceUnder, many_openings_leave_nothing_behind_in_the_server) {
    DesktopOptions options = bare();
    options.compositor = GetParam();
    Rig rig(options);
    RecordingInput input;
    const auto open = [&] {
        auto surface = rig.open(input);
        surface->present(
            overlay_drawings::selection({800, 600}, {{100, 100}, {300, 200}}, rig.rasterizer),
            {{0, 0}, {800, 600}});
        surface.reset();
        // What the stage keeps for a while has gone by then.
        rig.queue.advance(std::chrono::seconds(5));
        rig.settle();
    };
    open();
    const std::size_t before = rig.resourceCount();
    ASSERT_GT(before, 0U);
    for (int i = 0; i < 20; ++i) {
        open();
    }
    EXPECT_EQ(rig.resourceCount(), before);
    EXPECT_TRUE(rig.errors.empty()) << "X error " << static_cast<int>(rig.errors[0]);
}

TEST_P(OverlaySurfaceUnder, dimming_a_whole_4k_display_is_told_in_less_than_a_kilobyte) {
    DesktopOptions options = bare();
    constexpr base::Size view{3840, 2160};
    options.outputs = {{0, 0, 3840, 2160}};
    options.compositor = GetParam();
    Rig rig(options);
    RecordingInput input;
    const auto surface = rig.open(input);
    const auto before = xcb_total_written(rig.connection->get());
    surface->present({overlay::FillStep{{{0, 0}, view}, 0, {0, 0, 0, 0.4}}}, {{0, 0}, view});
    rig.connection->flush();
    const auto after = xcb_total_written(rig.connection->get());
    EXPECT_GT(after, before);
    EXPECT_LT(after - before, 1024U);
}

TEST_P(OverlaySurfaceUnder,
       eight_displays_cost_eight_windows_and_a_snapshot_each_where_it_is_frozen) {
    DesktopOptions options = bare();
    options.outputs.clear();
    for (int number = 0; number < 8; ++number) {
        options.outputs.push_back({number % 4 * 800, number / 4 * 600, 800, 600});
    }
    options.compositor = GetParam();
    Rig rig(options);
    RecordingInput input;
    const auto resources = [&] { return desktop::resourcesOf(rig.desktop.client(), ::getpid()); };
    rig.settle();
    auto before = resources();
    std::vector<std::unique_ptr<overlay::OverlaySurface>> surfaces;
    for (std::size_t number = 0; number < options.outputs.size(); ++number) {
        surfaces.push_back(rig.open(input, number));
        surfaces.back()->present({overlay::FillStep{{{0, 0}, {800, 600}}, 0, {0, 0, 0, 0.4}}},
                                 {{0, 0}, {800, 600}});
        rig.settle();
    }
    auto after = resources();
    EXPECT_EQ(after["WINDOW"] - before["WINDOW"], 8U);
    EXPECT_EQ(after["PIXMAP"] - before["PIXMAP"],
              GetParam() == desktop::Compositor::none ? 8U : 0U);
    EXPECT_EQ(after["ShmSeg"], before["ShmSeg"]);
}

INSTANTIATE_TEST_SUITE_P(Modes, OverlaySurfaceUnder,
                         testing::Values(desktop::Compositor::none, desktop::Compositor::picom),
                         [](const auto& compositor) {
                             return compositor.param == desktop::Compositor::none ? "frozen"
                                                                                  : "live";
                         });
