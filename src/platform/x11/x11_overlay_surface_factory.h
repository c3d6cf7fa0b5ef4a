#pragma once

#include <functional>
#include <memory>
#include <utility>

#include "overlay/overlay_surface.h"
#include "platform/x11/surface_services.h"

namespace platform::x11 {

/// Makes the overlay's surfaces on the X server. Main thread; everything given to `create` outlives
/// it, and it outlives its surfaces.
class X11OverlaySurfaceFactory final : public overlay::OverlaySurfaceFactory {
  public:
    /// Some round trips. Fails on a server that cannot blend.
    static base::Result<std::unique_ptr<X11OverlaySurfaceFactory>> create(
        Connection& connection, X11Displays& displays, X11Pointer& pointer, OverlayStage& stage,
        const KeyboardMapping& keyboardMapping, TextRasterizer& textRasterizer);
    ~X11OverlaySurfaceFactory() override;
    X11OverlaySurfaceFactory(const X11OverlaySurfaceFactory&) = delete;
    X11OverlaySurfaceFactory& operator=(const X11OverlaySurfaceFactory&) = delete;

    /// The windows are alike, whatever the configuration says: transparent, above everything, none
    /// of the window manager's. For a display that has just gone the surface shows nothing.
    std::unique_ptr<overlay::OverlaySurface> create(
        const base::Screen& screen, const overlay::PanelConfiguration& configuration,
        overlay::SurfaceInput& input) override;

    /// `listener` is called before a surface's window is shown: the server will be busy with it.
    void beforeShowing(std::function<void()> listener) {
        services_.beforeShowing = std::move(listener);
    }

    /// The keyboard could not be held: the surface that was made key last gets the keys by the
    /// input focus instead.
    void takeFocus() { services_.focus.take(); }

  private:
    X11OverlaySurfaceFactory(Connection& connection, X11Displays& displays, X11Pointer& pointer,
                             OverlayStage& stage, const KeyboardMapping& keyboardMapping,
                             TextRasterizer& textRasterizer, const RenderFormats& formats);

    SurfaceServices services_;
};

}  // namespace platform::x11
