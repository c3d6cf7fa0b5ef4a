#pragma once

#include <xcb/xcb.h>

#include <memory>
#include <vector>

#include "overlay/overlay_surface.h"
#include "platform/x11/display_layout.h"
#include "platform/x11/overlay_figure.h"
#include "platform/x11/surface_services.h"
#include "platform/x11/window_painter.h"

namespace platform::x11 {

/// The overlay over one display: an ARGB window where the session blends, else a window that shows
/// the display's snapshot. Main thread.
///
/// May be closed and destroyed by its own input: each event is reported by the last thing that its
/// handler does.
class X11OverlaySurface final : public overlay::OverlaySurface {
  public:
    /// The services and the input outlive the surface.
    X11OverlaySurface(SurfaceServices& services, const NativeDisplay& display,
                      overlay::SurfaceInput& input);
    ~X11OverlaySurface() override;
    X11OverlaySurface(const X11OverlaySurface&) = delete;
    X11OverlaySurface& operator=(const X11OverlaySurface&) = delete;

    void makeKeyAndOrderFront() override;
    void close() override;
    [[nodiscard]] base::Size measure(const std::string& text, const overlay::Font& font) override;
    void present(const std::vector<overlay::DrawingStep>& steps,
                 const base::Rect& changed) override;
    [[nodiscard]] std::optional<base::Screen> screen() const override;

    [[nodiscard]] xcb_window_t window() const { return window_; }

  private:
    enum class State { created, mapped, closed };
    enum class Button { up, down };

    void map();
    void paint(const PaintPlan& plan);
    void repair(const xcb_expose_event_t& event);
    [[nodiscard]] NativeRect pixelsOf(const base::Rect& changed) const;
    Connection::EventVerdict handle(const xcb_generic_event_t& event);
    void handlePress(const xcb_button_press_event_t& event);
    void handleRelease(const xcb_button_release_event_t& event);
    void handleMotion(const xcb_motion_notify_event_t& event);
    void handleKey(const xcb_key_press_event_t& event);
    [[nodiscard]] overlay::MouseEvent mouseEvent(std::int16_t x, std::int16_t y,
                                                 std::uint16_t state) const;

    SurfaceServices& services_;
    NativeDisplay display_;
    overlay::SurfaceInput& input_;
    std::shared_ptr<const Snapshot> snapshot_;
    xcb_window_t window_;
    std::unique_ptr<WindowPainter> painter_;
    FigureBuilder figureBuilder_;
    /// What the window shows, or will show when it may be painted again.
    std::vector<Figure> figures_;
    State state_ = State::created;
    Button button_ = Button::up;
    /// Where it went down, in the window.
    NativePoint pressedAt_{};
    Connection::Subscription subscription_;
};

}  // namespace platform::x11
