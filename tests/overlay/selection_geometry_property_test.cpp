#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>
#include <vector>

#include "overlay/selection_geometry.h"

namespace {

using base::Point;
using base::Rect;
using overlay::OptionKey;
using overlay::SelectionState;

/// Random places on a grid of eighths, so that sums and differences are exact.
class Places {
  public:
    double number() { return distribution_(generator_) / 8.0; }
    double length() { return std::abs(number()); }
    Point point() { return {number(), number()}; }
    Rect rect() { return {point(), {length(), length()}}; }

  private:
    std::mt19937 generator_{20250307};
    std::uniform_int_distribution<int> distribution_{-40000, 40000};
};

constexpr int rounds = 2000;

SelectionState drag(Point from, Point to, OptionKey optionKey) {
    SelectionState state;
    state.press(from);
    state.drag(to, optionKey);
    return state;
}

TEST(SelectionProperties, a_corner_drag_has_both_points_as_opposite_corners) {
    Places places;
    for (int round = 0; round < rounds; ++round) {
        const Point from = places.point();
        const Point to = places.point();
        const Rect rect = drag(from, to, OptionKey::released).selectionRect.value();
        EXPECT_EQ(rect.minX(), std::min(from.x, to.x));
        EXPECT_EQ(rect.maxX(), std::max(from.x, to.x));
        EXPECT_EQ(rect.minY(), std::min(from.y, to.y));
        EXPECT_EQ(rect.maxY(), std::max(from.y, to.y));
        EXPECT_EQ(rect, drag(to, from, OptionKey::released).selectionRect.value());
    }
}

TEST(SelectionProperties, a_centre_drag_has_its_middle_at_the_press_and_a_corner_at_the_pointer) {
    Places places;
    for (int round = 0; round < rounds; ++round) {
        const Point from = places.point();
        const Point to = places.point();
        const Rect rect = drag(from, to, OptionKey::held).selectionRect.value();
        EXPECT_EQ(rect.midX(), from.x);
        EXPECT_EQ(rect.midY(), from.y);
        EXPECT_TRUE(to.x == rect.minX() || to.x == rect.maxX());
        EXPECT_TRUE(to.y == rect.minY() || to.y == rect.maxY());
    }
}

TEST(SelectionProperties, the_middle_of_a_centre_drag_is_twice_as_large_as_its_corner_drag) {
    Places places;
    for (int round = 0; round < rounds; ++round) {
        const Point from = places.point();
        const Point to = places.point();
        const Rect corner = drag(from, to, OptionKey::released).selectionRect.value();
        const Rect centre = drag(from, to, OptionKey::held).selectionRect.value();
        EXPECT_EQ(centre.size.width, 2 * corner.size.width);
        EXPECT_EQ(centre.size.height, 2 * corner.size.height);
    }
}

TEST(SelectionProperties, no_drag_makes_a_negative_size) {
    Places places;
    for (int round = 0; round < rounds; ++round) {
        SelectionState state;
        state.press(places.point());
        for (int step = 0; step < 4; ++step) {
            state.drag(places.point(), step % 2 == 0 ? OptionKey::held : OptionKey::released);
            EXPECT_GE(state.selectionRect.value().size.width, 0);
            EXPECT_GE(state.selectionRect.value().size.height, 0);
        }
    }
}

TEST(SelectionProperties, only_the_press_and_the_last_drag_event_decide) {
    Places places;
    for (int round = 0; round < rounds; ++round) {
        const Point from = places.point();
        const Point to = places.point();
        SelectionState wandering;
        wandering.press(from);
        wandering.drag(places.point(), OptionKey::held);
        wandering.drag(places.point(), OptionKey::released);
        wandering.drag(to, OptionKey::held);
        EXPECT_EQ(wandering.selectionRect, drag(from, to, OptionKey::held).selectionRect);
    }
}

TEST(SelectionProperties, view_and_screen_space_convert_back_and_forth) {
    Places places;
    for (int round = 0; round < rounds; ++round) {
        const Rect rect = places.rect();
        const Point origin = places.point();
        EXPECT_EQ(overlay::screenToView(overlay::viewToScreen(rect, origin), origin), rect);
        EXPECT_EQ(overlay::viewToScreen(overlay::screenToView(rect, origin), origin), rect);
    }
}

TEST(SelectionProperties, the_flip_is_its_own_inverse_and_keeps_the_size) {
    Places places;
    for (int round = 0; round < rounds; ++round) {
        const Rect rect = places.rect();
        const double height = places.length();
        const Rect flipped = overlay::topLeftToScreen(rect, height);
        EXPECT_EQ(flipped.size, rect.size);
        EXPECT_EQ(overlay::topLeftToScreen(flipped, height), rect);
        EXPECT_EQ(flipped.maxY(), height - rect.minY());
    }
}

TEST(SelectionProperties, the_way_through_all_three_spaces_and_back_ends_where_it_began) {
    Places places;
    for (int round = 0; round < rounds; ++round) {
        const Rect listed = places.rect();
        const Point origin = places.point();
        const double height = places.length();
        const Rect drawn = overlay::screenToView(overlay::topLeftToScreen(listed, height), origin);
        EXPECT_EQ(overlay::topLeftToScreen(overlay::viewToScreen(drawn, origin), height), listed);
    }
}

TEST(SelectionProperties, containment_is_half_open_on_every_edge) {
    Places places;
    for (int round = 0; round < rounds; ++round) {
        Rect rect = places.rect();
        rect.size.width += 0.125;
        rect.size.height += 0.125;
        EXPECT_TRUE(rect.contains(rect.origin));
        EXPECT_TRUE(rect.contains({rect.maxX() - 0.0625, rect.maxY() - 0.0625}));
        EXPECT_FALSE(rect.contains({rect.maxX(), rect.midY()}));
        EXPECT_FALSE(rect.contains({rect.midX(), rect.maxY()}));
        EXPECT_FALSE(rect.contains({rect.minX() - 0.0625, rect.midY()}));
        EXPECT_FALSE(rect.contains({rect.midX(), rect.minY() - 0.0625}));
    }
}

TEST(SelectionProperties, a_point_in_a_tiling_belongs_to_exactly_one_tile) {
    Places places;
    for (int round = 0; round < rounds; ++round) {
        const Point point{std::fmod(places.length(), 400), std::fmod(places.length(), 300)};
        int holders = 0;
        for (int column = 0; column < 4; ++column) {
            for (int row = 0; row < 3; ++row) {
                holders += Rect{{column * 100.0, row * 100.0}, {100, 100}}.contains(point) ? 1 : 0;
            }
        }
        EXPECT_EQ(holders, 1);
    }
}

TEST(SelectionProperties, the_hovered_window_is_the_first_offered_one_that_holds_the_pointer) {
    Places places;
    for (int round = 0; round < rounds; ++round) {
        std::vector<overlay::WindowCandidate> list;
        for (std::uint32_t id = 1; id <= 6; ++id) {
            list.push_back({id, places.rect(), id % 3 == 0 ? 1 : 0, id % 2 == 0 ? 42 : 43});
        }
        SelectionState state;
        state.toggleWindowMode();
        const Point pointer = places.point();
        state.applyWindowList(list, 42, pointer);
        const auto expected =
            std::find_if(list.begin(), list.end(), [&](const overlay::WindowCandidate& window) {
                return window.ownerPID == 42 && window.windowLayer == 0 &&
                       window.frame.size.width > 50 && window.frame.size.height > 50 &&
                       window.frame.contains(pointer);
            });
        if (expected == list.end()) {
            EXPECT_EQ(state.selectedWindowID, std::nullopt);
        } else {
            EXPECT_EQ(state.selectedWindowID, expected->windowID);
            EXPECT_EQ(state.selectedWindowRect, expected->frame);
        }
    }
}

TEST(SelectionProperties, the_figures_follow_the_region_wherever_it_moves) {
    Places places;
    for (int round = 0; round < rounds; ++round) {
        const Rect rect = places.rect();
        const Point by = places.point();
        const Rect moved = overlay::viewToScreen(rect, by);
        const base::Size text{places.length(), places.length()};
        EXPECT_EQ(overlay::sizeLabelFrame(moved, text),
                  overlay::viewToScreen(overlay::sizeLabelFrame(rect, text), by));
        EXPECT_EQ(overlay::guideLines(moved)[0].from.x, rect.minX() + by.x);
        EXPECT_EQ(overlay::centreMark(moved)[1].to.y, rect.midY() + by.y + 4);
        EXPECT_EQ(overlay::sizeLabelText(moved), overlay::sizeLabelText(rect));
    }
}

}  // namespace
