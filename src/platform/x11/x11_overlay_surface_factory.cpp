#include "platform/x11/x11_overlay_surface_factory.h"

#include "platform/x11/gone_overlay_surface.h"
#include "platform/x11/overlay_window.h"
#include "platform/x11/x11_overlay_surface.h"

namespace platform::x11 {

base::Result<std::unique_ptr<X11OverlaySurfaceFactory>> X11OverlaySurfaceFactory::create(
    Connection& connection, X11Displays& displays, X11Pointer& pointer, OverlayStage& stage,
    const KeyboardMapping& keyboardMapping, TextRasterizer& textRasterizer) {
    const auto formats = RenderFormats::query(connection);
    if (!formats) {
        return formats.error();
    }
    return std::unique_ptr<X11OverlaySurfaceFactory>(new X11OverlaySurfaceFactory(
        connection, displays, pointer, stage, keyboardMapping, textRasterizer, formats.value()));
}

X11OverlaySurfaceFactory::X11OverlaySurfaceFactory(Connection& connection, X11Displays& displays,
                                                   X11Pointer& pointer, OverlayStage& stage,
                                                   const KeyboardMapping& keyboardMapping,
                                                   TextRasterizer& textRasterizer,
                                                   const RenderFormats& formats)
    : services_{connection,
                displays,
                pointer,
                stage,
                keyboardMapping,
                textRasterizer,
                formats,
                xcb_generate_id(connection.get()),
                OverlayFocus(connection),
                OverlayStack(connection)} {
    xcb_create_colormap(connection.get(), XCB_COLORMAP_ALLOC_NONE, services_.colormap,
                        connection.root(), formats.argbVisual);
    prepareOverlayWindows(connection);
}

X11OverlaySurfaceFactory::~X11OverlaySurfaceFactory() {
    xcb_free_colormap(services_.connection.get(), services_.colormap);
}

std::unique_ptr<overlay::OverlaySurface> X11OverlaySurfaceFactory::create(
    const base::Screen& screen, const overlay::PanelConfiguration& /*configuration*/,
    overlay::SurfaceInput& input) {
    const NativeDisplay* display = services_.displays.layout().find(screen.displayID);
    if (display == nullptr) {
        return std::make_unique<GoneOverlaySurface>(services_.textRasterizer);
    }
    return std::make_unique<X11OverlaySurface>(services_, *display, input);
}

}  // namespace platform::x11
