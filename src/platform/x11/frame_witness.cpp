#include "platform/x11/frame_witness.h"

#include <algorithm>
#include <cstdlib>

#include "platform/x11/pixel_layout.h"

namespace platform::x11 {

namespace {

constexpr std::uint32_t opaque = 0xff000000;

/// Of 24 bits, far from that of the next number.
std::uint32_t colorOf(std::uint64_t number) {
    // Knuth's multiplier, the golden ratio of 32 bits.
    return opaque | (static_cast<std::uint32_t>(number * 2654435761U) >> 8U);
}

/// A screen of 16 bits rounds a colour by so much.
bool isNear(std::uint8_t shown, std::uint32_t wanted) {
    constexpr int tolerance = 8;
    return std::abs(int{shown} - static_cast<int>(wanted & 0xffU)) <= tolerance;
}

}  // namespace

FrameWitness::FrameWitness(Connection& connection, xcb_window_t window, const NativeRect& frame,
                           const NativeRect& area, std::uint64_t number)
    : connection_(connection), window_(window), origin_{frame.x, frame.y}, color_(colorOf(number)) {
    const std::int32_t right = area.x + area.width;
    const std::int32_t bottom = area.y + area.height;
    const auto choose = [&](NativePoint vertical, NativePoint horizontal, NativePoint inside) {
        for (const NativePoint& point : {vertical, horizontal}) {
            if (frame.contains(point)) {
                return point;
            }
        }
        place_ = Place::insideOfArea;
        return inside;
    };
    points_ = {choose({area.x, area.y - 1}, {area.x - 1, area.y}, {area.x, area.y}),
               choose({right - 1, bottom}, {right, bottom - 1}, {right - 1, bottom - 1})};
}

std::vector<NativeRect> FrameWitness::pixels() const {
    std::vector<NativeRect> pixels;
    for (const NativePoint& point : points_) {
        pixels.push_back({point.x, point.y, 1, 1});
    }
    return pixels;
}

xcb_void_cookie_t FrameWitness::paint() {
    return repaint(color_);
}

xcb_void_cookie_t FrameWitness::clear() {
    return repaint(0);
}

xcb_void_cookie_t FrameWitness::repaint(std::uint32_t background) {
    auto* const server = connection_.get();
    const auto first =
        xcb_change_window_attributes(server, window_, XCB_CW_BACK_PIXEL, &background);
    for (const NativePoint& point : points_) {
        xcb_clear_area(server, 0, window_, static_cast<std::int16_t>(point.x - origin_.x),
                       static_cast<std::int16_t>(point.y - origin_.y), 1, 1);
    }
    constexpr std::uint32_t transparent = 0;
    xcb_change_window_attributes(server, window_, XCB_CW_BACK_PIXEL, &transparent);
    return first;
}

FrameWitness::Sight FrameWitness::sight() const {
    auto* const server = connection_.get();
    std::array<xcb_get_image_cookie_t, 2> cookies{};
    std::transform(points_.begin(), points_.end(), cookies.begin(), [&](const NativePoint& point) {
        return xcb_get_image(server, XCB_IMAGE_FORMAT_Z_PIXMAP, connection_.root(),
                             static_cast<std::int16_t>(point.x), static_cast<std::int16_t>(point.y),
                             1, 1, ~0U);
    });
    const auto count =
        std::count_if(cookies.begin(), cookies.end(), [&](xcb_get_image_cookie_t cookie) {
            // The screen may have become smaller: an error then.
            xcb_generic_error_t* error = nullptr;
            const Reply<xcb_get_image_reply_t> image(xcb_get_image_reply(server, cookie, &error));
            std::free(error);
            return image && isColor(image.get());
        });
    return count == 2 ? Sight::both : count == 1 ? Sight::one : Sight::none;
}

bool FrameWitness::isColor(const xcb_get_image_reply_t* image) const {
    const auto layout = PixelLayout::ofVisual(connection_, connection_.screen().root_visual);
    if (!layout ||
        static_cast<std::size_t>(xcb_get_image_data_length(image)) < layout->bytesPerRow(1)) {
        return false;
    }
    std::array<std::uint8_t, 4> shown{};
    layout->convertRow(xcb_get_image_data(image), shown.data(), 1);
    return isNear(shown[0], color_) && isNear(shown[1], color_ >> 8U) &&
           isNear(shown[2], color_ >> 16U);
}

}  // namespace platform::x11
