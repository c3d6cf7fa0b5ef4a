#include "platform/x11/overlay_window.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace platform::x11 {

namespace {

constexpr std::string_view windowName = "Lumaframe";
/// Instance and class, each with its zero byte.
constexpr std::string_view windowClass{"lumaframe\0Lumaframe\0", 20};
constexpr const char* windowTypeProperty = "_NET_WM_WINDOW_TYPE";
/// The one type that compositors give neither a shadow nor an animation by default.
constexpr const char* windowType = "_NET_WM_WINDOW_TYPE_DND";
constexpr const char* nameProperty = "_NET_WM_NAME";
constexpr const char* utf8Type = "UTF8_STRING";
/// What picom and KWin read in addition: no shadow, no animation when the window goes.
constexpr const char* shadowProperty = "_COMPTON_SHADOW";
constexpr const char* closeAnimationProperty = "_KDE_NET_WM_SKIP_CLOSE_ANIMATION";

constexpr std::uint32_t eventMask = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_BUTTON_PRESS |
                                    XCB_EVENT_MASK_BUTTON_RELEASE | XCB_EVENT_MASK_ENTER_WINDOW |
                                    XCB_EVENT_MASK_LEAVE_WINDOW | XCB_EVENT_MASK_POINTER_MOTION |
                                    XCB_EVENT_MASK_EXPOSURE;

void setText(Connection& connection, xcb_window_t window, xcb_atom_t property, xcb_atom_t type,
             std::string_view text) {
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window, property, type, 8,
                        static_cast<std::uint32_t>(text.size()), text.data());
}

void setNumber(Connection& connection, xcb_window_t window, const char* property, xcb_atom_t type,
               std::uint32_t number) {
    xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window, connection.atom(property),
                        type, 32, 1, &number);
}

void describe(Connection& connection, xcb_window_t window) {
    setText(connection, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, windowClass);
    setText(connection, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, windowName);
    setText(connection, window, connection.atom(nameProperty), connection.atom(utf8Type),
            windowName);
    setNumber(connection, window, windowTypeProperty, XCB_ATOM_ATOM, connection.atom(windowType));
    setNumber(connection, window, shadowProperty, XCB_ATOM_CARDINAL, 0);
    setNumber(connection, window, closeAnimationProperty, XCB_ATOM_CARDINAL, 1);
}

void create(SurfaceServices& services, xcb_window_t window, const NativeRect& frame,
            std::uint8_t depth, xcb_visualid_t visual, std::uint32_t mask,
            const std::uint32_t* values) {
    xcb_create_window(services.connection.get(), depth, window, services.connection.root(),
                      static_cast<std::int16_t>(frame.x), static_cast<std::int16_t>(frame.y),
                      static_cast<std::uint16_t>(frame.width),
                      static_cast<std::uint16_t>(frame.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      visual, mask, values);
}

}  // namespace

xcb_window_t makeOverlayWindow(SurfaceServices& services, const NativeRect& frame,
                               const Snapshot* snapshot) {
    Connection& connection = services.connection;
    const xcb_window_t window = xcb_generate_id(connection.get());
    if (snapshot == nullptr) {
        // In the order of the mask's bits. The background is transparent, not absent: a window
        // without one would begin with a copy of what lies under it.
        const std::array<std::uint32_t, 5> values{0, 0, 1, eventMask, services.colormap};
        create(services, window, frame, 32, services.formats.argbVisual,
               XCB_CW_BACK_PIXEL | XCB_CW_BORDER_PIXEL | XCB_CW_OVERRIDE_REDIRECT |
                   XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
               values.data());
    } else {
        const std::array<std::uint32_t, 3> values{snapshot->pixmap(), 1, eventMask};
        create(services, window, frame, connection.screen().root_depth,
               connection.screen().root_visual,
               XCB_CW_BACK_PIXMAP | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
    }
    describe(connection, window);
    return window;
}

void prepareOverlayWindows(Connection& connection) {
    for (const char* name : {windowTypeProperty, windowType, nameProperty, utf8Type, shadowProperty,
                             closeAnimationProperty}) {
        (void)connection.atom(name);
    }
}

}  // namespace platform::x11
