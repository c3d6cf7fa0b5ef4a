#include "platform/x11/window_painter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "overlay/selection_drawing.h"
#include "platform/x11/surface_rig.h"

using platform::x11::ArgbPixel;
using platform::x11::Figure;
using platform::x11::FigureBuilder;
using platform::x11::pixelAt;
using surface_rig::readWindow;
using surface_rig::RecordingInput;
using surface_rig::Rig;

namespace {

constexpr int width = 320;
constexpr int height = 240;

struct Case {
    desktop::Compositor compositor;
    double scale;
};

desktop::DesktopOptions optionsOf(const Case& one) {
    desktop::DesktopOptions options;
    options.outputs = {{0, 0, width, height}};
    options.windowManager = desktop::WindowManager::none;
    options.compositor = one.compositor;
    return options;
}

/// Something to look through at: windows of many colours.
void decorate(const desktop::XClient& client) {
    for (int i = 0; i < 12; ++i) {
        const xcb_window_t window = xcb_generate_id(client.get());
        const std::uint32_t values[] = {0x2A3F51U * static_cast<unsigned>(i + 1) & 0xFFFFFFU, 1};
        xcb_create_window(client.get(), XCB_COPY_FROM_PARENT, window, client.root(),
                          static_cast<std::int16_t>(i * 27), static_cast<std::int16_t>(i * 17), 90,
                          70, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
        xcb_map_window(client.get(), window);
    }
    client.synchronize();
}

/// `pixel` laid over an opaque `ground`.
ArgbPixel blended(ArgbPixel pixel, ArgbPixel ground) {
    const unsigned kept = 255 - (pixel >> 24U);
    ArgbPixel result = 0;
    for (const unsigned shift : {0U, 8U, 16U}) {
        const unsigned component =
            (pixel >> shift & 0xFFU) + ((ground >> shift & 0xFFU) * kept + 127) / 255;
        result |= std::min(component, 255U) << shift;
    }
    return result;
}

int distance(ArgbPixel first, ArgbPixel second) {
    int largest = 0;
    for (const unsigned shift : {0U, 8U, 16U}) {
        largest = std::max(largest, std::abs(static_cast<int>(first >> shift & 0xFFU) -
                                             static_cast<int>(second >> shift & 0xFFU)));
    }
    return largest;
}

class WindowPainterCase : public testing::TestWithParam<Case> {
  protected:
    WindowPainterCase() : rig(optionsOf(GetParam()), GetParam().scale) {
        decorate(rig.desktop.client());
        screen = desktop::readScreen(rig.desktop.client());
        surface = rig.open(input);
        window = rig.overlays().at(0);
    }

    std::vector<overlay::DrawingStep> randomDrawing(int motion) {
        const base::Rect rect = overlay_drawings::randomRect(view, GetParam().scale, random);
        return motion % 9 == 8   ? std::vector<overlay::DrawingStep>{}
               : motion % 7 == 6 ? overlay_drawings::highlight(view, rect)
                                 : overlay_drawings::selection(view, rect, rig.rasterizer);
    }
    void present(const std::vector<overlay::DrawingStep>& steps) {
        surface->present(steps, {{0, 0}, view});
        rig.settle();
    }
    [[nodiscard]] std::vector<ArgbPixel> shown() {
        auto pixels = readWindow(rig.desktop.client(), window, width, height);
        if (GetParam().compositor == desktop::Compositor::none) {
            for (ArgbPixel& pixel : pixels) {
                pixel &= 0xFFFFFFU;
            }
        }
        return pixels;
    }
    void expectShows(const std::vector<overlay::DrawingStep>& steps) {
        FigureBuilder builder(GetParam().scale, height, rig.rasterizer);
        const std::vector<Figure> figures = builder.build(steps);
        const auto pixels = shown();
        ASSERT_EQ(pixels.size(), static_cast<std::size_t>(width * height));
        for (int y = 0; y < height; ++y) {
            for (int x = 0; x < width; ++x) {
                const ArgbPixel pixel = pixels[static_cast<std::size_t>(y * width + x)];
                const ArgbPixel drawn = pixelAt(figures, x, y);
                if (GetParam().compositor == desktop::Compositor::none) {
                    ASSERT_LE(distance(pixel, blended(drawn, screen.at(x, y))), 1) << x << " " << y;
                } else {
                    ASSERT_EQ(pixel, drawn) << x << " " << y;
                }
            }
        }
    }

    std::mt19937 random{23};
    Rig rig;
    base::Size view{width / GetParam().scale, height / GetParam().scale};
    desktop::Picture screen;
    RecordingInput input;
    std::unique_ptr<overlay::OverlaySurface> surface;
    xcb_window_t window = XCB_WINDOW_NONE;
};

}  // namespace

TEST_P(WindowPainterCase, repainting_only_what_changed_gives_the_same_picture_as_painting_all) {
    for (int motion = 0; motion < 30; ++motion) {
        const auto steps = randomDrawing(motion);
        present(steps);
        const auto small = shown();
        // The server paints the background, and the whole window has to be painted anew.
        xcb_clear_area(rig.desktop.client().get(), 1, window, 0, 0, 0, 0);
        rig.desktop.client().synchronize();
        rig.settle();
        ASSERT_TRUE(small == shown()) << "motion " << motion;
        expectShows(steps);
        ASSERT_FALSE(HasFatalFailure()) << "motion " << motion;
    }
    EXPECT_TRUE(rig.errors.empty());
}

TEST_P(WindowPainterCase, the_drags_of_a_selection_leave_nothing_behind) {
    const auto coordinate = [&](double length) {
        return std::uniform_int_distribution<int>(
                   0, static_cast<int>(length * GetParam().scale))(random) /
               GetParam().scale;
    };
    const base::Rect bounds{{0, 0}, view};
    const auto measure = [&](const std::string& text, const overlay::Font& font) {
        return surface->measure(text, font);
    };
    overlay::SelectionState state;
    overlay::SelectionDrawing before;
    for (int motion = 0; motion < 30; ++motion) {
        if (motion % 10 == 0) {
            state.press({coordinate(view.width), coordinate(view.height)});
        }
        state.drag({coordinate(view.width), coordinate(view.height)},
                   motion % 3 == 0 ? overlay::OptionKey::held : overlay::OptionKey::released);
        auto after = overlay::drawSelection(state, bounds, view.height, measure);
        surface->present(after.steps, overlay::changedRect(before, after, bounds));
        rig.settle();
        expectShows(after.steps);
        ASSERT_FALSE(HasFatalFailure()) << "motion " << motion;
        before = std::move(after);
    }
}

TEST_P(WindowPainterCase, what_was_covered_for_a_while_is_painted_again) {
    const auto steps = overlay_drawings::selection(view, {{30, 20}, {80, 60}}, rig.rasterizer);
    present(steps);
    xcb_clear_area(rig.desktop.client().get(), 1, window, 20, 40, 130, 150);
    rig.desktop.client().synchronize();
    rig.settle();
    expectShows(steps);
}

TEST_P(WindowPainterCase, a_drawing_from_before_the_window_is_shown_appears_with_it) {
    surface.reset();
    rig.queue.advance(std::chrono::seconds(5));
    surface = rig.factory->create(rig.displays.screens().at(0), {}, input);
    const auto steps = overlay_drawings::selection(view, {{30, 20}, {80, 60}}, rig.rasterizer);
    surface->present(steps, {{0, 0}, view});
    surface->makeKeyAndOrderFront();
    rig.settle();
    window = rig.overlays().back();
    expectShows(steps);
}

TEST_P(WindowPainterCase, only_what_lies_in_the_changed_rectangle_is_painted) {
    const overlay::Color bright{1, 1, 1, 0.4};
    surface->present({overlay::FillStep{{{0, 0}, view}, 0, bright}}, {{40, 40}, {20, 20}});
    rig.settle();
    const auto pixels = shown();
    const double scale = GetParam().scale;
    const auto at = [&](double x, double y) {
        return pixels[static_cast<std::size_t>((height - y * scale)) * width +
                      static_cast<std::size_t>(x * scale)];
    };
    const auto bare = [&](double x, double y) {
        return GetParam().compositor == desktop::Compositor::none
                   ? screen.at(static_cast<int>(x * scale), static_cast<int>(height - y * scale)) &
                         0xFFFFFFU
                   : 0U;
    };
    EXPECT_NE(at(50, 50), bare(50, 50));
    EXPECT_EQ(at(30, 50), bare(30, 50));
    EXPECT_EQ(at(50, 70), bare(50, 70));
}

INSTANTIATE_TEST_SUITE_P(
    Modes, WindowPainterCase,
    testing::Values(Case{desktop::Compositor::none, 1.0}, Case{desktop::Compositor::none, 1.25},
                    Case{desktop::Compositor::none, 2.0}, Case{desktop::Compositor::picom, 1.0},
                    Case{desktop::Compositor::picom, 1.25}, Case{desktop::Compositor::picom, 2.0}),
    [](const auto& one) {
        return std::string(one.param.compositor == desktop::Compositor::none ? "frozen" : "live") +
               "_times_" + std::to_string(static_cast<int>(one.param.scale * 100));
    });
