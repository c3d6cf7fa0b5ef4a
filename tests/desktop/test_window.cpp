#include "desktop/test_window.h"

#include <unistd.h>

#include <array>
#include <cstring>
#include <utility>

#include "desktop/pattern.h"
#include "desktop/wait.h"

namespace desktop {
namespace {

template <typename Unit>
void setProperty(const XClient& client, xcb_window_t window, const std::string& name,
                 const std::string& type, std::size_t count, const Unit* data) {
    xcb_change_property(client.get(), XCB_PROP_MODE_REPLACE, window, client.atom(name),
                        client.atom(type), sizeof(Unit) * 8, static_cast<std::uint32_t>(count),
                        data);
}

}  // namespace

TestWindow::TestWindow(const std::string& displayName, const TestWindowOptions& options)
    : client_(displayName), window_(xcb_generate_id(client_.get())) {
    picture_ = pattern(options.width, options.height, options.seed);
    create(options);
    paint();
    xcb_map_window(client_.get(), window_);
    xcb_flush(client_.get());
    require("The mapping of the window \"" + options.title + "\"", [this] {
        handleEvents();
        return isMapped_;
    });
    // A window manager may still move it, and a compositor shows it a moment later.
    require("The painting of the window \"" + options.title + "\"", [this] {
        const Place at = place();
        // For a moment it may be elsewhere, where a window manager puts back an earlier window of
        // the same number; beyond the screen nothing can be read.
        return isOnScreen({at.x, at.y, picture_.width, picture_.height}) &&
               readScreen(client_, at.x, at.y, picture_.width, picture_.height) == picture_;
    });
}

void TestWindow::create(const TestWindowOptions& options) {
    const std::uint32_t values[] = {
        client_.screen().black_pixel,
        options.management == TestWindowOptions::Management::unmanaged ? 1U : 0U,
        XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_STRUCTURE_NOTIFY};
    xcb_create_window(client_.get(), XCB_COPY_FROM_PARENT, window_, client_.root(),
                      static_cast<std::int16_t>(options.x), static_cast<std::int16_t>(options.y),
                      static_cast<std::uint16_t>(options.width),
                      static_cast<std::uint16_t>(options.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
    setProperty(client_, window_, "WM_NAME", "STRING", options.title.size(), options.title.data());
    setProperty(client_, window_, "_NET_WM_NAME", "UTF8_STRING", options.title.size(),
                options.title.data());
    const auto pid = static_cast<std::uint32_t>(::getpid());
    setProperty(client_, window_, "_NET_WM_PID", "CARDINAL", 1, &pid);
    // USPosition | USSize | PPosition | PSize | PMinSize | PMaxSize, so that no window manager
    // chooses another place or size.
    std::uint32_t hints[18] = {0x3f,
                               static_cast<std::uint32_t>(options.x),
                               static_cast<std::uint32_t>(options.y),
                               static_cast<std::uint32_t>(options.width),
                               static_cast<std::uint32_t>(options.height),
                               static_cast<std::uint32_t>(options.width),
                               static_cast<std::uint32_t>(options.height),
                               static_cast<std::uint32_t>(options.width),
                               static_cast<std::uint32_t>(options.height)};
    setProperty(client_, window_, "WM_NORMAL_HINTS", "WM_SIZE_HINTS", 18, hints);
    setAtoms("_NET_WM_WINDOW_TYPE", options.types);
    setAtoms("_NET_WM_STATE", options.states);
    if (options.decoration == TestWindowOptions::Decoration::none) {
        constexpr std::uint32_t decorationsFlag = 2;
        const std::uint32_t motif[5] = {decorationsFlag, 0, 0, 0, 0};
        setProperty(client_, window_, "_MOTIF_WM_HINTS", "_MOTIF_WM_HINTS", 5, motif);
    }
}

void TestWindow::setAtoms(const std::string& property, const std::vector<std::string>& names) {
    std::vector<xcb_atom_t> atoms;
    for (const std::string& name : names) {
        atoms.push_back(client_.atom(name));
    }
    if (!atoms.empty()) {
        setProperty(client_, window_, property, "ATOM", atoms.size(), atoms.data());
    }
}

void TestWindow::paint() {
    // As the background: the server itself repaints what was covered, whatever this process does.
    const xcb_pixmap_t pixmap = upload(client_, picture_);
    xcb_change_window_attributes(client_.get(), window_, XCB_CW_BACK_PIXMAP, &pixmap);
    xcb_clear_area(client_.get(), 0, window_, 0, 0, 0, 0);
    xcb_free_pixmap(client_.get(), pixmap);
}

void TestWindow::handleEvents() {
    while (const auto event = client_.pollEvent()) {
        switch (event->response_type & 0x7fU) {
            case XCB_KEY_PRESS:
                keys_.push_back(reinterpret_cast<const xcb_key_press_event_t&>(*event).detail);
                break;
            case XCB_MAP_NOTIFY:
                isMapped_ = true;
                break;
            default:
                break;
        }
    }
}

Place TestWindow::place() const {
    const Reply<xcb_translate_coordinates_reply_t> reply(xcb_translate_coordinates_reply(
        client_.get(), xcb_translate_coordinates(client_.get(), window_, client_.root(), 0, 0),
        nullptr));
    return reply ? Place{reply->dst_x, reply->dst_y} : Place{};
}

bool TestWindow::isOnScreen(const Area& area) const {
    const Reply<xcb_get_geometry_reply_t> screen(xcb_get_geometry_reply(
        client_.get(), xcb_get_geometry(client_.get(), client_.root()), nullptr));
    return screen && area.x >= 0 && area.y >= 0 && area.x + area.width <= screen->width &&
           area.y + area.height <= screen->height;
}

Area TestWindow::frame() const {
    const auto extents = client_.property(window_, "_NET_FRAME_EXTENTS");
    if (extents && extents->size() == 4 * sizeof(std::uint32_t)) {
        // The window manager's frame may reach further, invisibly.
        std::array<int, 4> widths{};
        std::memcpy(widths.data(), extents->data(), extents->size());
        const auto [left, right, top, bottom] = widths;
        const Place at = place();
        return {at.x - left, at.y - top, picture_.width + left + right,
                picture_.height + top + bottom};
    }
    xcb_window_t top = window_;
    while (true) {
        const Reply<xcb_query_tree_reply_t> tree(
            xcb_query_tree_reply(client_.get(), xcb_query_tree(client_.get(), top), nullptr));
        if (!tree || tree->parent == client_.root()) {
            break;
        }
        top = tree->parent;
    }
    const Reply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(client_.get(), xcb_get_geometry(client_.get(), top), nullptr));
    return geometry ? Area{geometry->x, geometry->y, geometry->width, geometry->height} : Area{};
}

void TestWindow::focus() {
    require("The input focus of a test window", [this] {
        xcb_set_input_focus(client_.get(), XCB_INPUT_FOCUS_POINTER_ROOT, window_, XCB_CURRENT_TIME);
        return client_.inputFocus() == window_;
    });
}

std::vector<std::uint8_t> TestWindow::takeKeys() {
    client_.synchronize();
    handleEvents();
    return std::exchange(keys_, {});
}

void TestWindow::unmap() {
    xcb_unmap_window(client_.get(), window_);
    client_.synchronize();
}

}  // namespace desktop
