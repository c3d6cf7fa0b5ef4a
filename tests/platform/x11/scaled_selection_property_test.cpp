// From the pointer's pixels through points to the pixels of the picture, on displays of any scale:
// everything that is computed between a drag and the reading of the screen.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

#include "capture/region_configuration.h"
#include "overlay/selection_geometry.h"
#include "platform/x11/capture_region.h"
#include "platform/x11/display_layout.h"

namespace {

using base::Point;
using base::Rect;
using platform::x11::captureRegion;
using platform::x11::DisplayLayout;
using platform::x11::DisplayRole;
using platform::x11::NativeDisplay;
using platform::x11::NativePoint;
using platform::x11::NativeRect;

constexpr double scales[] = {1, 1.25, 1.5, 1.75, 2, 2.25, 3, 4.0 / 3, 1.1, 2.6};
constexpr int rounds = 400;

struct Random {
    std::mt19937 generator{20};
    int between(int lowest, int highest) {
        return std::uniform_int_distribution<int>(lowest, highest)(generator);
    }
    double fraction() { return std::uniform_real_distribution<double>(0, 1)(generator); }

    /// Displays that touch: a row or a column of them, each with a scale of its own, the primary
    /// anywhere among them.
    DisplayLayout layout() {
        std::vector<NativeDisplay> displays;
        const int count = between(1, 4);
        const bool isRow = between(0, 1) == 0;
        const int primary = between(0, count - 1);
        NativePoint next{0, 0};
        for (int index = 0; index < count; ++index) {
            const NativeRect native{next.x, next.y, between(300, 3840), between(300, 2160)};
            displays.push_back({static_cast<std::uint32_t>(index + 1), "D" + std::to_string(index),
                                native, scales[between(0, std::size(scales) - 1)],
                                index == primary ? DisplayRole::primary : DisplayRole::secondary,
                                nullptr});
            (isRow ? next.x : next.y) += isRow ? native.width : native.height;
        }
        return DisplayLayout(displays);
    }
    /// Whole pixels from 0 to `length`, further apart than the smallest selection at any scale. The
    /// last pixel is left out: the pointer on it is on the edge behind it.
    std::vector<int> cuts(int length) {
        std::vector<int> edges{0};
        while (edges.back() < length) {
            const int next = edges.back() + between(10, 400);
            edges.push_back(next >= length - 10 ? length : next);
        }
        return edges;
    }
};

std::vector<capture::ShareableDisplay> listed(const DisplayLayout& layout) {
    std::vector<capture::ShareableDisplay> displays;
    for (const NativeDisplay& display : layout.displays()) {
        displays.push_back({display.id, layout.screenFrame(display), display.scale, nullptr});
    }
    return displays;
}

/// The pixels that are read for a selection on `display`, given in view space.
NativeRect picture(const DisplayLayout& layout, const NativeDisplay& display,
                   const Rect& selection) {
    const Rect screenRect = overlay::viewToScreen(selection, layout.screenFrame(display).origin);
    const auto chosen = capture::displayForSelection(listed(layout), screenRect);
    if (!chosen || chosen->displayID != display.id) {
        ADD_FAILURE() << "The selection is taken from another display.";
        return {};
    }
    const auto configuration = capture::regionConfiguration(
        capture::sourceRect(screenRect, chosen->frame), display.scale, std::nullopt);
    return captureRegion(display, configuration).value_or(NativeRect{});
}

/// The pixel on which the pointer must be to stand on the edge.
int pointerAt(int edge, int length) {
    return edge == length ? length - 1 : edge;
}

Rect drag(const NativeDisplay& display, NativePoint from, NativePoint to) {
    const auto place = [&](NativePoint edge) {
        return DisplayLayout::viewFromPixel(display, {pointerAt(edge.x, display.native.width),
                                                      pointerAt(edge.y, display.native.height)});
    };
    overlay::SelectionState state;
    state.press(place(from));
    state.drag(place(to), overlay::OptionKey::released);
    return state.capturableRegion().value_or(Rect{});
}

TEST(ScaledSelections, that_lie_edge_to_edge_tile_their_display_without_gap_or_overlap) {
    Random random;
    for (int round = 0; round < rounds; ++round) {
        const DisplayLayout layout = random.layout();
        for (const NativeDisplay& display : layout.displays()) {
            const auto columns = random.cuts(display.native.width);
            const auto rows = random.cuts(display.native.height);
            for (std::size_t x = 0; x + 1 < columns.size(); ++x) {
                for (std::size_t y = 0; y + 1 < rows.size(); ++y) {
                    const bool isBackwards = random.between(0, 1) == 0;
                    const NativePoint from{columns[x], rows[y]};
                    const NativePoint to{columns[x + 1], rows[y + 1]};
                    const Rect selection =
                        isBackwards ? drag(display, to, from) : drag(display, from, to);
                    ASSERT_EQ(picture(layout, display, selection),
                              (NativeRect{display.native.x + from.x, display.native.y + from.y,
                                          to.x - from.x, to.y - from.y}))
                        << "scale " << display.scale << ", pixels " << from.x << "," << from.y
                        << " to " << to.x << "," << to.y;
                }
            }
        }
    }
}

TEST(ScaledSelections, with_edges_anywhere_begin_at_the_pixel_of_the_corner_and_are_cut_short) {
    Random random;
    for (int round = 0; round < rounds * 50; ++round) {
        const DisplayLayout layout = random.layout();
        const NativeDisplay& display = layout.displays()[static_cast<std::size_t>(
            random.between(0, static_cast<int>(layout.displays().size()) - 1))];
        const base::Size whole{display.native.width / display.scale,
                               display.native.height / display.scale};
        const base::Size size{3 + random.fraction() * (whole.width / 2),
                              3 + random.fraction() * (whole.height / 2)};
        // From the top of the display, as the picture counts.
        const Point corner{random.fraction() * (whole.width - size.width),
                           random.fraction() * (whole.height - size.height)};
        const Rect selection{{corner.x, whole.height - corner.y - size.height}, size};
        EXPECT_EQ(
            picture(layout, display, selection),
            (NativeRect{display.native.x + static_cast<int>(std::floor(corner.x * display.scale)),
                        display.native.y + static_cast<int>(std::floor(corner.y * display.scale)),
                        static_cast<int>(size.width * display.scale),
                        static_cast<int>(size.height * display.scale)}));
    }
}

TEST(ScaledSelections, the_corners_of_a_display_are_selected_to_the_last_pixel) {
    Random random;
    for (int round = 0; round < rounds; ++round) {
        const DisplayLayout layout = random.layout();
        for (const NativeDisplay& display : layout.displays()) {
            const NativePoint end{display.native.width, display.native.height};
            EXPECT_EQ(picture(layout, display, drag(display, {0, 0}, end)), display.native);
            EXPECT_EQ(drag(display, {0, 0}, end).size, layout.screenFrame(display).size);
        }
    }
}

TEST(ScaledSelections, of_whole_points_say_so_in_their_label) {
    Random random;
    // A whole number of pixels at every one of the scales.
    constexpr int length = 60;
    for (const double scale : scales) {
        const NativeDisplay display{1,      "A", {0, 0, 1279, 801}, scale, DisplayRole::primary,
                                    nullptr};
        const int pixels = static_cast<int>(std::lround(length * scale));
        for (int round = 0; round < rounds; ++round) {
            const NativePoint from{random.between(0, 1000), random.between(0, 600)};
            const Rect selection = drag(display, from, {from.x + pixels, from.y + pixels});
            ASSERT_EQ(overlay::sizeLabelText(selection), "60 x 60") << "scale " << scale;
        }
    }
}

TEST(ScaledSelections, a_window_is_highlighted_on_exactly_its_pixels) {
    Random random;
    for (int round = 0; round < rounds * 20; ++round) {
        const DisplayLayout layout = random.layout();
        const NativeDisplay& display = layout.displays().back();
        const NativeRect window{display.native.x + random.between(0, display.native.width - 100),
                                display.native.y + random.between(0, display.native.height - 100),
                                random.between(60, 100), random.between(60, 100)};
        const Rect inView = overlay::screenToView(
            overlay::topLeftToScreen(layout.topLeftFromNative(window), layout.primaryHeight()),
            layout.screenFrame(display).origin);
        // Less than a 255th of a pixel does not show.
        const double left = inView.minX() * display.scale;
        const double top = display.native.height - inView.maxY() * display.scale;
        EXPECT_NEAR(left, window.x - display.native.x, 1e-4);
        EXPECT_NEAR(top, window.y - display.native.y, 1e-4);
        EXPECT_NEAR(inView.size.width * display.scale, window.width, 1e-4);
        EXPECT_NEAR(inView.size.height * display.scale, window.height, 1e-4);
    }
}

}  // namespace
