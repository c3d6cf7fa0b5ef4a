#include "platform/macos/panel_overlay_surface.h"

#import <AppKit/AppKit.h>

#include "platform/macos/cocoa_screen.h"
#include "platform/macos/core_graphics_geometry.h"
#include "platform/macos/overlay_drawing.h"
#include "platform/macos/overlay_panel.h"
#include "platform/macos/overlay_view.h"

namespace platform::macos {

struct PanelOverlaySurface::Window {
    LumaframeOverlayPanel* panel;
    LumaframeOverlayView* view;
};

PanelOverlaySurface::PanelOverlaySurface(const base::Screen& screen,
                                         const overlay::PanelConfiguration& configuration,
                                         overlay::SurfaceInput& input) {
    LumaframeOverlayPanel* const panel =
        [[LumaframeOverlayPanel alloc] initWithFrame:cgRectFrom(screen.frame)
                                       configuration:configuration];
    LumaframeOverlayView* const view = [[LumaframeOverlayView alloc]
          initWithFrame:NSMakeRect(0, 0, screen.frame.size.width, screen.frame.size.height)
        trackingOptions:configuration.trackingAreaOptions];
    panel.input = &input;
    view.input = &input;
    panel.contentView = view;
    window_ = std::make_unique<Window>(Window{panel, view});
}

PanelOverlaySurface::~PanelOverlaySurface() {
    close();
    // The panel may be in the middle of the event that has closed it.
    LumaframeOverlayPanel* const panel = window_->panel;
    dispatch_async(dispatch_get_main_queue(), ^{
      (void)panel;
    });
}

void PanelOverlaySurface::makeKeyAndOrderFront() {
    [window_->panel makeKeyAndOrderFront:nil];
}

void PanelOverlaySurface::close() {
    window_->panel.input = nullptr;
    window_->view.input = nullptr;
    [window_->panel close];
}

base::Size PanelOverlaySurface::measure(const std::string& text, const overlay::Font& font) {
    return measureText(text, font);
}

void PanelOverlaySurface::present(const std::vector<overlay::DrawingStep>& steps,
                                  const base::Rect& changed) {
    [window_->view present:steps changed:cgRectFrom(changed)];
}

std::optional<base::Screen> PanelOverlaySurface::screen() const {
    NSScreen* const screen = window_->panel.screen;
    return screen == nil ? std::nullopt : std::optional(screenFrom(screen));
}

std::unique_ptr<overlay::OverlaySurface> PanelOverlaySurfaceFactory::create(
    const base::Screen& screen, const overlay::PanelConfiguration& configuration,
    overlay::SurfaceInput& input) {
    return std::make_unique<PanelOverlaySurface>(screen, configuration, input);
}

}  // namespace platform::macos
