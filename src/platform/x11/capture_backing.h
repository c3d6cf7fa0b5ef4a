#pragma once

#include <memory>
#include <vector>

#include "platform/x11/display_layout.h"
#include "platform/x11/overlay_stage.h"
#include "platform/x11/redirected_windows.h"
#include "platform/x11/window_list.h"

namespace platform::x11 {

/// What a listed display carries: where it was, and the snapshot that the overlay showed then; null
/// where the live screen is to be read.
struct DisplayBacking {
    NativeDisplay display;
    std::shared_ptr<const Snapshot> snapshot;
};

/// What a listed window carries.
struct WindowBacking {
    ListedWindow window;
    /// The windows of the screen in front of it, the overlay left out.
    std::vector<NativeRect> inFront;
    /// Keeps the window whole when the overlay closes before its picture is taken.
    std::shared_ptr<const RedirectedWindows> keptWindows;
    /// All displays: a window may lie on several. Shared by all windows of one list.
    std::shared_ptr<const std::vector<DisplayBacking>> displays;
};

}  // namespace platform::x11
