#include "platform/x11/window_frame.h"

#include <gtest/gtest.h>

namespace {

using platform::x11::FrameExtents;
using platform::x11::frameOf;
using platform::x11::NativeRect;
using platform::x11::ShadowSource;
using platform::x11::visiblePart;

constexpr NativeRect topLevel{190, 142, 384, 254};

TEST(VisiblePart, leaves_a_frame_alone_whose_extents_are_larger_than_it) {
    const NativeRect frame{10, 20, 100, 80};
    EXPECT_EQ(visiblePart(frame, {5, 6, 7, 8}), (NativeRect{15, 27, 89, 65}));
    EXPECT_EQ(visiblePart(frame, {60, 60, 0, 0}), frame);
    EXPECT_EQ(visiblePart(frame, FrameExtents{}), frame);
}

TEST(WindowFrame, is_the_top_level_window_when_nothing_else_is_known) {
    const auto frame = frameOf({.topLevel = topLevel});
    EXPECT_EQ(frame.visible, topLevel);
    EXPECT_EQ(frame.topLevel(), topLevel);
    EXPECT_EQ(frame.shadow, ShadowSource::none);
    EXPECT_FALSE(frame.hasDecoration());
}

TEST(WindowFrame, leaves_out_invisible_edges_around_the_decoration) {
    const auto frame = frameOf({.topLevel = topLevel,
                                .client = NativeRect{200, 187, 364, 199},
                                .decoration = FrameExtents{0, 0, 37, 0}});
    EXPECT_EQ(frame.visible, (NativeRect{200, 150, 364, 236}));
    EXPECT_EQ(frame.margins, (FrameExtents{10, 10, 8, 10}));
    EXPECT_EQ(frame.topLevel(), topLevel);
    EXPECT_EQ(frame.shadow, ShadowSource::none) << "the edges are no shadow";
    EXPECT_TRUE(frame.hasDecoration());
}

TEST(WindowFrame, of_a_shaded_window_is_what_is_left_of_it) {
    const auto frame = frameOf({.topLevel = {200, 150, 364, 37},
                                .client = NativeRect{200, 187, 364, 199},
                                .decoration = FrameExtents{0, 0, 37, 0}});
    EXPECT_EQ(frame.visible, (NativeRect{200, 150, 364, 37}));
}

TEST(WindowFrame, leaves_out_the_shadow_that_the_window_draws) {
    const auto frame = frameOf({.topLevel = topLevel, .ownShadow = {26, 26, 23, 29}});
    EXPECT_EQ(frame.visible, (NativeRect{216, 165, 332, 202}));
    EXPECT_EQ(frame.shadow, ShadowSource::window);
    EXPECT_EQ(frame.topLevel(), topLevel);
}

TEST(WindowFrame, believes_no_decoration_that_lies_outside_of_the_top_level_window) {
    const auto frame = frameOf({.topLevel = topLevel,
                                .client = NativeRect{2000, 2000, 10, 10},
                                .decoration = FrameExtents{1, 1, 1, 1}});
    EXPECT_EQ(frame.visible, topLevel);
    const auto wide = frameOf({.topLevel = topLevel,
                               .client = NativeRect{200, 187, 364, 199},
                               .decoration = FrameExtents{0xffff, 0xffff, 0xffff, 0xffff}});
    EXPECT_EQ(wide.visible, topLevel);
}

}  // namespace
