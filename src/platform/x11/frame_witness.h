#pragma once

#include <xcb/xcb.h>

#include <array>
#include <cstdint>
#include <vector>

#include "platform/x11/connection.h"
#include "platform/x11/native_geometry.h"

namespace platform::x11 {

/// Two pixels of a window, by which a frame of the compositor is known to have been composed after
/// an area of that window was cleared: they are painted after the clearing, and whatever the screen
/// shows together with them is as new as they are. Nothing that a compositor tells says as much:
/// of two frames that follow a clearing both may have been composed before it.
///
/// They lie before and behind the area in the order in which a screen is painted, so that all of
/// the area is on the screen when both are; outside of it where the window leaves room, so that
/// they need not leave the screen again before the area is read. Main thread.
class FrameWitness {
  public:
    enum class Place { outsideOfArea, insideOfArea };

    /// `window`, over `frame` of the screen, has the background pixel 0 and 32 bits; `area` is a
    /// part of `frame`. `number` makes the colour: no two clearings that can be seen together share
    /// one.
    FrameWitness(Connection& connection, xcb_window_t window, const NativeRect& frame,
                 const NativeRect& area, std::uint64_t number);

    /// Paints the pixels, and damages them again when they are painted already. Gives the first
    /// request of it.
    xcb_void_cookie_t paint();
    /// Clears them. Gives the first request of it.
    xcb_void_cookie_t clear();

    enum class Sight { both, one, none };
    /// How many of the pixels are on the screen. One round trip.
    [[nodiscard]] Sight sight() const;

    [[nodiscard]] Place place() const { return place_; }
    /// The pixels, as parts of the screen.
    [[nodiscard]] std::vector<NativeRect> pixels() const;

  private:
    [[nodiscard]] xcb_void_cookie_t repaint(std::uint32_t background);
    [[nodiscard]] bool isColor(const xcb_get_image_reply_t* image) const;

    Connection& connection_;
    xcb_window_t window_;
    NativePoint origin_;
    std::uint32_t color_;
    std::array<NativePoint, 2> points_{};
    Place place_ = Place::outsideOfArea;
};

}  // namespace platform::x11
