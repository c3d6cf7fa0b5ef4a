#pragma once

#include "platform/x11/native_geometry.h"
#include "platform/x11/screen_reader.h"

namespace platform::x11 {

/// Whether the window manager left pixels unpainted in the corners of `frame`, a part of the
/// canvas, for its compositor to cut off: mutter draws round corners into windows without alpha,
/// and what is outside of them stays black. Black that does not look like the outside of a round
/// corner belongs to the window.
[[nodiscard]] bool hasUnpaintedCorners(const Canvas& canvas, const NativeRect& frame);

/// Makes those pixels transparent, and the softened ones beside them as translucent as they are
/// dark. Each pixel has its alpha, 255 everywhere.
void clearUnpaintedCorners(const Canvas& canvas, const NativeRect& frame);

}  // namespace platform::x11
