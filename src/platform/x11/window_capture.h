#pragma once

#include <optional>
#include <vector>

#include "base/image.h"
#include "base/result.h"
#include "capture/capture_service.h"
#include "platform/x11/capture_backing.h"
#include "platform/x11/connection.h"
#include "platform/x11/screen_reader.h"

namespace platform::x11 {

/// Takes the picture of one window with its decoration. Main thread; waits for the server.
///
/// A window that has a pixmap of its own (under a compositor, or redirected by somebody else) is
/// read from there, whole and with its alpha; of any other window only what the screen or the
/// snapshots show can be had.
class WindowCapture {
  public:
    /// All outlive it.
    WindowCapture(Connection& connection, ScreenReader& reader);

    /// From the window's own pixmap; none when it does not have one.
    std::optional<base::Result<base::Image>> fromPixmap(
        const WindowBacking& backing, capture::WindowShadow shadow,
        const std::shared_ptr<const base::ColorSpace>& colorSpace);
    /// As much as `sources` show of it.
    base::Result<base::Image> fromScreen(const WindowBacking& backing,
                                         const std::vector<PixelSource>& sources,
                                         capture::WindowShadow shadow,
                                         const std::shared_ptr<const base::ColorSpace>& colorSpace);

  private:
    base::Result<base::Image> withSoftShadow(
        const NativeRect& window, const std::vector<PixelSource>& sources, double scale,
        const std::shared_ptr<const base::ColorSpace>& colorSpace);

    Connection& connection_;
    ScreenReader& reader_;
};

}  // namespace platform::x11
