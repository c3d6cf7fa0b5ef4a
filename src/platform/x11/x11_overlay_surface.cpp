#include "platform/x11/x11_overlay_surface.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "overlay/keyboard_tap.h"
#include "platform/x11/key_map.h"
#include "platform/x11/overlay_window.h"
#include "platform/x11/paint_plan.h"

namespace platform::x11 {

namespace {

constexpr overlay::Font labelFont{10, overlay::FontWeight::medium};

template <typename Event>
const Event& as(const xcb_generic_event_t& event) {
    return reinterpret_cast<const Event&>(event);
}

/// The window that a handled event was reported to; none for other events.
xcb_window_t windowOf(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7F) {
        case XCB_BUTTON_PRESS:
        case XCB_BUTTON_RELEASE:
        case XCB_KEY_PRESS:
        case XCB_MOTION_NOTIFY:
        case XCB_ENTER_NOTIFY:
        case XCB_LEAVE_NOTIFY:
            // They share one layout up to the window.
            return as<xcb_button_press_event_t>(event).event;
        case XCB_EXPOSE:
            return as<xcb_expose_event_t>(event).window;
        default:
            return XCB_WINDOW_NONE;
    }
}

/// Whether the server says that there is no such window to show: it had no memory to make it.
bool isRefusalToShow(const xcb_generic_event_t& event, xcb_window_t window) {
    const auto& error = as<xcb_value_error_t>(event);
    return error.response_type == 0 && error.major_opcode == XCB_MAP_WINDOW &&
           error.bad_value == window;
}

}  // namespace

X11OverlaySurface::X11OverlaySurface(SurfaceServices& services, const NativeDisplay& display,
                                     overlay::SurfaceInput& input)
    : services_(services),
      display_(display),
      input_(input),
      snapshot_(services.stage.mode() == StageMode::frozen
                    ? services.stage.snapshotFor(display.native)
                    : nullptr),
      window_(makeOverlayWindow(services, display.native, snapshot_.get())),
      painter_(std::make_unique<WindowPainter>(services.connection, services.formats, window_,
                                               snapshot_)),
      figureBuilder_(display.scale, display.native.height, services.textRasterizer),
      subscription_(services.connection.subscribe(
          [this](const xcb_generic_event_t& event) { return handle(event); })) {}

X11OverlaySurface::~X11OverlaySurface() {
    close();
}

void X11OverlaySurface::makeKeyAndOrderFront() {
    switch (state_) {
        case State::created:
            map();
            break;
        case State::mapped: {
            const std::uint32_t above = XCB_STACK_MODE_ABOVE;
            xcb_configure_window(services_.connection.get(), window_, XCB_CONFIG_WINDOW_STACK_MODE,
                                 &above);
            break;
        }
        case State::closed:
            return;
    }
    services_.focus.makeKey(window_);
}

void X11OverlaySurface::map() {
    services_.beforeShowing();
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(services_.connection.get(), window_, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    services_.pointer.addWindow(window_);
    xcb_map_window(services_.connection.get(), window_);
    state_ = State::mapped;
    services_.stage.windowMapped(window_, display_.native, snapshot_);
    services_.stack.add(window_);
}

void X11OverlaySurface::close() {
    const State was = std::exchange(state_, State::closed);
    if (was == State::closed) {
        return;
    }
    // Pictures end with their window; freed after it they would be an error.
    painter_.reset();
    if (was == State::created) {
        xcb_destroy_window(services_.connection.get(), window_);
        services_.connection.flush();
        return;
    }
    services_.focus.release(window_);
    services_.stack.remove(window_);
    services_.pointer.removeWindow(window_);
    const std::uint32_t nothing = XCB_EVENT_MASK_NO_EVENT;
    xcb_change_window_attributes(services_.connection.get(), window_, XCB_CW_EVENT_MASK, &nothing);
    services_.stage.windowClosed(window_);
    services_.connection.flush();
}

base::Size X11OverlaySurface::measure(const std::string& text, const overlay::Font& font) {
    return services_.textRasterizer.measure(text, font);
}

std::optional<base::Screen> X11OverlaySurface::screen() const {
    for (const base::Screen& screen : services_.displays.layout().screens()) {
        if (screen.displayID == display_.id) {
            return screen;
        }
    }
    return std::nullopt;
}

NativeRect X11OverlaySurface::pixelsOf(const base::Rect& changed) const {
    const double width = display_.native.width;
    const double height = display_.native.height;
    // Outward to whole pixels, and one more for the softened edge of what touches the rectangle.
    const auto low = [](double position, double limit) {
        return static_cast<std::int32_t>(std::clamp(std::floor(position) - 1, 0.0, limit));
    };
    const auto high = [](double position, double limit) {
        return static_cast<std::int32_t>(std::clamp(std::ceil(position) + 1, 0.0, limit));
    };
    const std::int32_t left = low(changed.minX() * display_.scale, width);
    const std::int32_t right = high(changed.maxX() * display_.scale, width);
    const std::int32_t top = low(height - changed.maxY() * display_.scale, height);
    const std::int32_t bottom = high(height - changed.minY() * display_.scale, height);
    return {left, top, right - left, bottom - top};
}

void X11OverlaySurface::present(const std::vector<overlay::DrawingStep>& steps,
                                const base::Rect& changed) {
    if (state_ == State::closed) {
        return;
    }
    std::vector<Figure> figures = figureBuilder_.build(steps);
    // Before, it is the first Expose event that paints.
    if (state_ == State::mapped) {
        paint(planChange(figures_, figures, pixelsOf(changed)));
    }
    figures_ = std::move(figures);
}

void X11OverlaySurface::paint(const PaintPlan& plan) {
    // A refusal is made up for by an Expose event.
    if (!plan.isEmpty() && services_.stage.requestPaint(window_) == PaintPermission::granted) {
        painter_->paint(plan);
        services_.connection.flush();
        services_.stage.windowPainted(window_, plan.bounds());
    }
}

void X11OverlaySurface::repair(const xcb_expose_event_t& event) {
    if (figures_.empty()) {
        // The window is up and nobody has dragged yet: time to open the font, which at its first
        // use takes several milliseconds that the first drag would feel.
        (void)services_.textRasterizer.rasterize("0", labelFont, display_.scale);
    }
    paint(planRepair(figures_, {event.x, event.y, event.width, event.height}));
}

Connection::EventVerdict X11OverlaySurface::handle(const xcb_generic_event_t& event) {
    if (state_ != State::mapped) {
        return Connection::EventVerdict::pass;
    }
    if (isRefusalToShow(event, window_)) {
        input_.cancelOperation();
        return Connection::EventVerdict::consumed;
    }
    if (windowOf(event) != window_) {
        return Connection::EventVerdict::pass;
    }
    switch (event.response_type & 0x7F) {
        case XCB_BUTTON_PRESS:
            handlePress(as<xcb_button_press_event_t>(event));
            break;
        case XCB_BUTTON_RELEASE:
            handleRelease(as<xcb_button_release_event_t>(event));
            break;
        case XCB_MOTION_NOTIFY:
            handleMotion(as<xcb_motion_notify_event_t>(event));
            break;
        case XCB_ENTER_NOTIFY:
            input_.mouseEntered();
            break;
        case XCB_LEAVE_NOTIFY:
            input_.mouseExited();
            break;
        case XCB_KEY_PRESS:
            handleKey(as<xcb_key_press_event_t>(event));
            break;
        case XCB_EXPOSE:
            repair(as<xcb_expose_event_t>(event));
            break;
        default:
            break;
    }
    return Connection::EventVerdict::consumed;
}

void X11OverlaySurface::handlePress(const xcb_button_press_event_t& event) {
    if (event.detail == XCB_BUTTON_INDEX_1) {
        button_ = Button::down;
        pressedAt_ = {event.event_x, event.event_y};
        input_.mouseDown(mouseEvent(event.event_x, event.event_y, event.state));
    }
}

void X11OverlaySurface::handleRelease(const xcb_button_release_event_t& event) {
    if (event.detail == XCB_BUTTON_INDEX_1 && button_ == Button::down) {
        button_ = Button::up;
        input_.mouseUp(mouseEvent(event.event_x, event.event_y, event.state));
    }
}

void X11OverlaySurface::handleMotion(const xcb_motion_notify_event_t& event) {
    const overlay::MouseEvent mouse = mouseEvent(event.event_x, event.event_y, event.state);
    switch (button_) {
        case Button::up:
            input_.mouseMoved(mouse);
            break;
        case Button::down: {
            const auto pixels = static_cast<std::size_t>(std::abs(event.event_x - pressedAt_.x)) *
                                static_cast<std::size_t>(std::abs(event.event_y - pressedAt_.y));
            OverlayStage& stage = services_.stage;
            input_.mouseDragged(mouse);
            // Behind the painting, which is waited for.
            stage.noteSelection(pixels);
            break;
        }
    }
}

void X11OverlaySurface::handleKey(const xcb_key_press_event_t& event) {
    const std::uint32_t keyCode = virtualKeyCodeOf(event.detail).value_or(overlay::unknownKeyCode);
    if (!isModifierKey(keyCode)) {
        input_.keyDown(keyCode);
    }
}

overlay::MouseEvent X11OverlaySurface::mouseEvent(std::int16_t x, std::int16_t y,
                                                  std::uint16_t state) const {
    const bool isOptionHeld = (state & services_.keyboardMapping.modifiers().option) != 0;
    return {DisplayLayout::viewFromPixel(display_, {x, y}),
            isOptionHeld ? overlay::optionModifierFlag : 0U};
}

}  // namespace platform::x11
