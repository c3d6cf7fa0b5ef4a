#pragma once

#include <vector>

#include "platform/x11/native_geometry.h"

namespace platform::x11 {

/// The common part of two rectangles; zeros when there is none.
[[nodiscard]] NativeRect intersection(const NativeRect& first, const NativeRect& second);

/// The smallest rectangle that holds both; an empty one counts for nothing.
[[nodiscard]] NativeRect boundingBox(const NativeRect& first, const NativeRect& second);

/// A set of pixels that only gets smaller: what is left of some rectangles after others were taken
/// away.
class NativeRegion {
  public:
    NativeRegion() = default;
    explicit NativeRegion(const NativeRect& rect) : NativeRegion(std::vector{rect}) {}
    /// Empty rectangles count for nothing.
    explicit NativeRegion(const std::vector<NativeRect>& rects);

    void subtract(const NativeRect& rect);
    [[nodiscard]] bool isEmpty() const { return parts_.empty(); }
    [[nodiscard]] bool intersects(const NativeRect& rect) const;
    /// None of them empty.
    [[nodiscard]] const std::vector<NativeRect>& parts() const { return parts_; }

  private:
    std::vector<NativeRect> parts_;
};

}  // namespace platform::x11
