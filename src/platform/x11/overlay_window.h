#pragma once

#include <xcb/xcb.h>

#include "platform/x11/display_layout.h"
#include "platform/x11/overlay_stage.h"
#include "platform/x11/surface_services.h"

namespace platform::x11 {

/// Makes the window of one surface, unmapped, exactly over the display: override-redirect, with
/// everything that tells window managers and compositors to leave it alone. `snapshot` is null for
/// a live window, which then shows nothing; a frozen one shows the snapshot. No round trip.
xcb_window_t makeOverlayWindow(SurfaceServices& services, const NativeRect& frame,
                               const Snapshot* snapshot);

/// Has the server look up the names that `makeOverlayWindow` uses, so that it has them at hand.
void prepareOverlayWindows(Connection& connection);

}  // namespace platform::x11
