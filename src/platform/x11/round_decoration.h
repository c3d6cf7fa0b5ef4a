#pragma once

#include <cstdint>
#include <optional>

#include "platform/x11/native_geometry.h"
#include "platform/x11/screen_reader.h"

namespace platform::x11 {

/// The radius of the upper corners of `frame`, a part of the canvas whose decoration was read from
/// the screen, with what lies behind the window outside of them; none where they are not round.
///
/// A corner counts as round when all that lies within the circle has the one colour of the title
/// bar beside it, and what lies on its rim has another. `barHeight` is the height of that bar.
[[nodiscard]] std::optional<double> decorationRadius(const Canvas& canvas, const NativeRect& frame,
                                                     std::int32_t barHeight);

/// Makes the corners outside of circles of this radius transparent, and their rims as translucent
/// as the circle covers them, in the colour of the title bar. Each pixel has its alpha.
void cutRoundDecoration(const Canvas& canvas, const NativeRect& frame, double radius);

}  // namespace platform::x11
