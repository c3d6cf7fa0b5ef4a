#pragma once

#include "capture/capture_service.h"
#include "platform/x11/connection.h"
#include "platform/x11/display_layout.h"
#include "platform/x11/overlay_stage.h"

namespace platform::x11 {

/// The displays, primary first, and the windows, front to back, each with its backing
/// (`DisplayBacking`, `WindowBacking`). Main thread; a handful of round trips.
[[nodiscard]] capture::ShareableContent listContent(Connection& connection,
                                                    const OverlayStage& stage,
                                                    const DisplayLayout& layout,
                                                    capture::DesktopWindows desktopWindows,
                                                    capture::WindowVisibility visibility);

}  // namespace platform::x11
