#include "platform/x11/window_shape.h"

#include <xcb/shape.h>

#include <algorithm>
#include <cstring>

#include "platform/x11/native_region.h"

namespace platform::x11 {

namespace {

/// Clears the pixels from `begin` to `end` of a row, which may lie outside of it.
void clearSpan(const Canvas& canvas, int row, int begin, int end) {
    const int first = std::clamp(begin, 0, canvas.width);
    const int last = std::clamp(end, first, canvas.width);
    std::memset(canvas.row(row) + static_cast<std::size_t>(first) * 4, 0,
                static_cast<std::size_t>(last - first) * 4);
}

}  // namespace

WindowShape WindowShape::of(Connection& connection, xcb_window_t window, NativePoint origin) {
    const auto* extension = xcb_get_extension_data(connection.get(), &xcb_shape_id);
    if (extension == nullptr || extension->present == 0) {
        return {};
    }
    const auto extentsCookie = xcb_shape_query_extents(connection.get(), window);
    const auto partsCookie =
        xcb_shape_get_rectangles(connection.get(), window, XCB_SHAPE_SK_BOUNDING);
    const auto geometryCookie = xcb_get_geometry(connection.get(), window);
    const Reply<xcb_shape_query_extents_reply_t> extents(
        xcb_shape_query_extents_reply(connection.get(), extentsCookie, nullptr));
    const Reply<xcb_shape_get_rectangles_reply_t> reply(
        xcb_shape_get_rectangles_reply(connection.get(), partsCookie, nullptr));
    const Reply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection.get(), geometryCookie, nullptr));
    if (!extents || extents->bounding_shaped == 0 || !reply || !geometry) {
        return {};
    }
    // Counted by the server from inside of the border.
    const int border = geometry->border_width;
    const xcb_rectangle_t* rectangles = xcb_shape_get_rectangles_rectangles(reply.get());
    std::vector<NativeRect> parts;
    for (int index = 0; index < xcb_shape_get_rectangles_rectangles_length(reply.get()); ++index) {
        const xcb_rectangle_t& part = rectangles[index];
        parts.push_back(
            {origin.x + border + part.x, origin.y + border + part.y, part.width, part.height});
    }
    return WindowShape(std::move(parts));
}

bool WindowShape::covers(const NativeRect& area) const {
    if (!parts_) {
        return true;
    }
    std::int64_t covered = 0;
    for (const NativeRect& part : *parts_) {
        const NativeRect common = intersection(part, area);
        covered += std::int64_t{common.width} * common.height;
    }
    return covered == std::int64_t{area.width} * area.height;
}

void WindowShape::clip(const Canvas& canvas, const NativeRect& area) const {
    if (!parts_) {
        return;
    }
    auto band = parts_->begin();
    for (int row = 0; row < canvas.height; ++row) {
        const int y = area.y + row;
        band = std::find_if(band, parts_->end(),
                            [&](const NativeRect& part) { return part.y + part.height > y; });
        int begin = 0;
        for (auto part = band; part != parts_->end() && part->y <= y; ++part) {
            clearSpan(canvas, row, begin, part->x - area.x);
            begin = std::max(begin, part->x + part->width - area.x);
        }
        clearSpan(canvas, row, begin, canvas.width);
    }
}

}  // namespace platform::x11
