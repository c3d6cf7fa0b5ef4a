#include "desktop/test_window.h"

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <utility>

#include "desktop/wait.h"

namespace desktop {
namespace {

/// Every place another colour, without any structure that repeats inside a screen.
Picture pattern(int width, int height, std::uint32_t seed) {
    Picture picture{width, height, {}};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            std::uint32_t mixed = static_cast<std::uint32_t>(x) * 2654435761U +
                                  static_cast<std::uint32_t>(y) * 2246822519U + seed * 3266489917U;
            mixed ^= mixed >> 15U;
            mixed *= 2246822519U;
            picture.pixels.push_back(0xff000000U | (mixed >> 8U));
        }
    }
    return picture;
}

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
        return readScreen(client_, at.x, at.y, picture_.width, picture_.height) == picture_;
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
}

void TestWindow::paint() {
    // As the background: the server itself repaints what was covered, whatever this process does.
    const xcb_pixmap_t pixmap = xcb_generate_id(client_.get());
    const xcb_gcontext_t context = xcb_generate_id(client_.get());
    const auto width = static_cast<std::uint16_t>(picture_.width);
    xcb_create_pixmap(client_.get(), client_.screen().root_depth, pixmap, window_, width,
                      static_cast<std::uint16_t>(picture_.height));
    xcb_create_gc(client_.get(), context, pixmap, 0, nullptr);
    // Row bands keep each request under the server's smallest maximum length.
    const int rowsPerBand = std::max(1, 60000 / picture_.width);
    for (int row = 0; row < picture_.height; row += rowsPerBand) {
        const int rows = std::min(rowsPerBand, picture_.height - row);
        const std::uint32_t* data = picture_.pixels.data() + std::ptrdiff_t{row} * width;
        xcb_put_image(client_.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, context, width,
                      static_cast<std::uint16_t>(rows), 0, static_cast<std::int16_t>(row), 0,
                      client_.screen().root_depth, static_cast<std::uint32_t>(width * rows * 4),
                      reinterpret_cast<const std::uint8_t*>(data));
    }
    xcb_change_window_attributes(client_.get(), window_, XCB_CW_BACK_PIXMAP, &pixmap);
    xcb_clear_area(client_.get(), 0, window_, 0, 0, 0, 0);
    xcb_free_gc(client_.get(), context);
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
