#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "base/image.h"
#include "base/result.h"
#include "capture/capture_service.h"
#include "platform/x11/capture_backing.h"
#include "platform/x11/connection.h"
#include "platform/x11/decoration_source.h"
#include "platform/x11/screen_reader.h"
#include "platform/x11/window_pixmap.h"
#include "platform/x11/window_shape.h"

namespace platform::x11 {

/// Takes the picture of one window with its decoration. Main thread; waits for the server.
///
/// A window that has a pixmap of its own (under a compositor, or redirected behind the overlay) is
/// read from there, whole; of any other window only what the screen or the snapshots show can be
/// had. A compositor blends the window by its alpha, which is then in the picture; where nobody
/// blends, the window is as opaque as people see it.
class WindowCapture {
  public:
    /// All outlive it.
    WindowCapture(Connection& connection, ScreenReader& reader);

    /// From the window's own pixmap; none when it does not have one. A decoration that is only on
    /// the screen is taken from there where all of it shows, and else left out.
    std::optional<base::Result<base::Image>> fromPixmap(
        const WindowBacking& backing, DecorationSource decoration, capture::WindowShadow shadow,
        const std::shared_ptr<const base::ColorSpace>& colorSpace);
    /// As much as `sources` show of it.
    base::Result<base::Image> fromScreen(const WindowBacking& backing,
                                         std::vector<PixelSource> sources,
                                         capture::WindowShadow shadow,
                                         const std::shared_ptr<const base::ColorSpace>& colorSpace);

  private:
    /// Where the pixels of a window are, all in the same coordinates.
    struct Material {
        /// What people see as the window.
        NativeRect visible{};
        /// With the shadow that the window draws itself; `visible` when it draws none.
        NativeRect withOwnShadow{};
        std::vector<PixelSource> sources;
        WindowShape shape;
        double scale = 1;
        enum class Corners {
            painted,
            /// Black where the compositor is to cut them off.
            perhapsUnpainted,
            /// Read from the screen, where what is behind the window shows.
            perhapsOpen,
        } corners = Corners::painted;
        /// Of the decoration.
        std::int32_t barHeight = 0;
    };

    [[nodiscard]] std::vector<PixelSource> sourcesFrom(const WindowPixmap& pixmap,
                                                       const PixelLayout& layout,
                                                       const WindowBacking& backing) const;
    void addDecorationFromScreen(Material& material, const WindowBacking& backing) const;
    base::Result<base::Image> picture(Material material, capture::WindowShadow shadow,
                                      const std::shared_ptr<const base::ColorSpace>& colorSpace);

    Connection& connection_;
    ScreenReader& reader_;
};

}  // namespace platform::x11
