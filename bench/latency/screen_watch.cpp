#include "latency/screen_watch.h"

#include <sys/ipc.h>
#include <sys/shm.h>
#include <xcb/damage.h>
#include <xcb/shm.h>

#include <stdexcept>

#include "latency/monotonic.h"

namespace latency {

using desktop::Reply;

ScreenWatch::ScreenWatch(const std::string& displayName) : client_(displayName) {
    xcb_connection_t* connection = client_.get();
    const int shared = ::shmget(IPC_PRIVATE, static_cast<std::size_t>(width()) * 4, 0600);
    pixels_ = static_cast<std::uint32_t*>(::shmat(shared, nullptr, 0));
    segment_ = xcb_generate_id(connection);
    xcb_shm_attach(connection, segment_, static_cast<std::uint32_t>(shared), 0);
    client_.synchronize();
    ::shmctl(shared, IPC_RMID, nullptr);

    const std::uint32_t mask = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(connection, client_.root(), XCB_CW_EVENT_MASK, &mask);
    const auto* extension = xcb_get_extension_data(connection, &xcb_damage_id);
    if (extension == nullptr || extension->present == 0) {
        throw std::runtime_error("The X server does not report damage.");
    }
    damageNotify_ = static_cast<std::uint8_t>(extension->first_event + XCB_DAMAGE_NOTIFY);
    xcb_discard_reply(connection, xcb_damage_query_version(connection, 1, 1).sequence);
    xcb_damage_create(connection, xcb_generate_id(connection), client_.root(),
                      XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
    client_.synchronize();
}

ScreenWatch::~ScreenWatch() {
    ::shmdt(pixels_);
}

int ScreenWatch::descriptor() const {
    return xcb_get_file_descriptor(client_.get());
}

std::vector<std::uint32_t> ScreenWatch::readRow() {
    const auto cookie = xcb_shm_get_image(
        client_.get(), client_.root(), 0, static_cast<std::int16_t>(y_),
        client_.screen().width_in_pixels, 1, ~0U, XCB_IMAGE_FORMAT_Z_PIXMAP, segment_, 0);
    const Reply<xcb_shm_get_image_reply_t> reply(
        xcb_shm_get_image_reply(client_.get(), cookie, nullptr));
    return {pixels_, pixels_ + width()};
}

void ScreenWatch::noteMapping(xcb_window_t window) {
    const double at = now();
    const Reply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(client_.get(), xcb_get_geometry(client_.get(), window), nullptr));
    const bool isOverlay =
        geometry && geometry->width >= width() * 9 / 10 && geometry->height >= height() * 9 / 10;
    if (isOverlay && !mappedAt_) {
        mappedAt_ = at;
        mappedWindow_ = window;
    }
}

void ScreenWatch::drain() {
    bool isPainted = false;
    while (const auto event = client_.pollEvent()) {
        const auto type = static_cast<std::uint8_t>(event->response_type & 0x7FU);
        if (type == damageNotify_) {
            isPainted = true;
        } else if (type == XCB_MAP_NOTIFY) {
            noteMapping(reinterpret_cast<const xcb_map_notify_event_t&>(*event).window);
        }
    }
    if (!isPainted) {
        return;
    }
    const double at = now();
    paintedAt_ = at;
    if (!changedAt_ && !row_.empty() && readRow() != row_) {
        changedAt_ = at;
    }
}

void ScreenWatch::restart(int y) {
    y_ = y;
    drain();
    row_ = readRow();
    drain();
    mappedAt_.reset();
    changedAt_.reset();
}

void ScreenWatch::waitUntilStill(std::chrono::milliseconds limit) {
    constexpr double stillness = 300;
    paintedAt_ = now();
    watchUntil(
        {this}, [this] { return now() - paintedAt_ > stillness; }, limit);
}

bool ScreenWatch::isMapped() {
    if (mappedWindow_ == XCB_WINDOW_NONE) {
        return false;
    }
    const Reply<xcb_get_window_attributes_reply_t> attributes(xcb_get_window_attributes_reply(
        client_.get(), xcb_get_window_attributes(client_.get(), mappedWindow_), nullptr));
    if (!attributes || attributes->map_state != XCB_MAP_STATE_VIEWABLE) {
        mappedWindow_ = XCB_WINDOW_NONE;
    }
    return mappedWindow_ != XCB_WINDOW_NONE;
}

}  // namespace latency
