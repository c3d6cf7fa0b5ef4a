#pragma once

#include <memory>
#include <string>
#include <vector>

#include "base/displays.h"
#include "base/geometry.h"
#include "platform/x11/native_geometry.h"

namespace platform::x11 {

enum class DisplayRole { secondary, primary };

/// One display as the X server has it.
struct NativeDisplay {
    base::DisplayID id = 0;
    /// The RandR name, "HDMI-1".
    std::string name;
    /// Never empty.
    NativeRect native;
    /// Native pixels for each point, above 0.
    double scale = 1.0;
    DisplayRole role = DisplayRole::secondary;
    /// Null when the display has no colour profile.
    std::shared_ptr<const base::ColorSpace> colorSpace;
};

/// Where the displays are, and the conversions between native pixels and points. A value; any
/// thread.
///
/// A display keeps its native origin (counted from the primary's, which is the origin of the two
/// spaces in points); lengths inside of it are native pixels divided by its scale. So two displays
/// that touch in pixels may leave a gap in points, or overlap there, and a point in pixels is
/// always converted by the one display that holds its pixel. Lengths are rounded to a 2^30th of a
/// point, so that sums and differences of them are exact.
class DisplayLayout {
  public:
    /// Without a primary among them the first display is it; of several the first one.
    explicit DisplayLayout(std::vector<NativeDisplay> displays = {});

    /// The primary first, the others in the order they were given.
    [[nodiscard]] const std::vector<NativeDisplay>& displays() const { return displays_; }
    /// The same in screen space.
    [[nodiscard]] std::vector<base::Screen> screens() const;
    /// Null when there is no such display.
    [[nodiscard]] const NativeDisplay* find(base::DisplayID id) const;
    /// The display that holds the pixel, or in a gap the one that is nearest to it; null only
    /// without any display.
    [[nodiscard]] const NativeDisplay* displayAt(NativePoint pixel) const;
    /// The display's frame in top-left space.
    [[nodiscard]] base::Rect topLeftFrame(const NativeDisplay& display) const;
    /// The display's frame in screen space.
    [[nodiscard]] base::Rect screenFrame(const NativeDisplay& display) const;
    /// Points; what the flip between top-left and screen space uses. 0 without any display.
    [[nodiscard]] double primaryHeight() const;

    /// A pixel (the pointer's) in top-left space.
    [[nodiscard]] base::Point topLeftFromNative(NativePoint pixel) const;
    /// A window's frame in top-left space, converted whole by the display that holds its centre.
    [[nodiscard]] base::Rect topLeftFromNative(const NativeRect& frame) const;
    /// Where the pointer is in view space, given the pixel that it is on, counted from the
    /// display's upper left one: at that pixel's upper left corner, but on the last column or row
    /// at the display's far edge, so that a drag into the corner selects up to the very edge.
    [[nodiscard]] static base::Point viewFromPixel(const NativeDisplay& display, NativePoint pixel);
    /// The pixels of a rectangle in screen space on `display`: each edge at the nearest pixel
    /// boundary, not clipped.
    [[nodiscard]] NativeRect nativeFromScreen(const NativeDisplay& display,
                                              const base::Rect& rect) const;
    /// The same for a rectangle in view space (bottom-left origin of the display).
    [[nodiscard]] static NativeRect nativeFromView(const NativeDisplay& display,
                                                   const base::Rect& rect);
    /// The same for a rectangle in points inside of the display, y down from its top.
    [[nodiscard]] static NativeRect nativeFromDisplayTopLeft(const NativeDisplay& display,
                                                             const base::Rect& rect);

  private:
    [[nodiscard]] NativePoint origin() const;

    std::vector<NativeDisplay> displays_;
};

}  // namespace platform::x11
