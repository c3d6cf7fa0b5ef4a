#pragma once

#include <optional>

#include "capture/capture_service.h"
#include "platform/x11/display_layout.h"
#include "platform/x11/native_geometry.h"

namespace platform::x11 {

/// The native pixels that a still of `display` is made of: they begin at the pixel that holds the
/// upper left corner of the source rectangle and are as many as the configuration says; not clipped
/// to the display. None when the numbers are out of the range of an X screen.
[[nodiscard]] std::optional<NativeRect> captureRegion(
    const NativeDisplay& display, const capture::StreamConfiguration& configuration);

}  // namespace platform::x11
