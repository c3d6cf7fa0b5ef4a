#include "platform/x11/window_painter.h"

#include <algorithm>
#include <bit>
#include <map>
#include <utility>

namespace platform::x11 {

namespace {

/// Pixels in one request: far below the 256 KB that every server takes.
constexpr std::int32_t pixelsPerUpload = 32768;

xcb_rectangle_t rectangleOf(const NativeRect& rect) {
    return {static_cast<std::int16_t>(rect.x), static_cast<std::int16_t>(rect.y),
            static_cast<std::uint16_t>(rect.width), static_cast<std::uint16_t>(rect.height)};
}

/// RENDER counts to 65535; a byte times 257 comes out of the server as the same byte.
xcb_render_color_t colorOf(ArgbPixel pixel) {
    const auto component = [&](unsigned shift) {
        return static_cast<std::uint16_t>((pixel >> shift & 0xFFU) * 257U);
    };
    return {component(16), component(8), component(0), component(24)};
}

xcb_gcontext_t makeContext(Connection& connection, xcb_drawable_t drawable) {
    const xcb_gcontext_t context = xcb_generate_id(connection.get());
    // Otherwise the server reports each copy.
    const std::uint32_t noExposures = 0;
    xcb_create_gc(connection.get(), context, drawable, XCB_GC_GRAPHICS_EXPOSURES, &noExposures);
    return context;
}

ArgbPixel swappedBytes(ArgbPixel pixel) {
    return pixel << 24U | (pixel & 0xFF00U) << 8U | (pixel >> 8U & 0xFF00U) | pixel >> 24U;
}

bool hasForeignByteOrder(Connection& connection) {
    const auto native = std::endian::native == std::endian::little ? XCB_IMAGE_ORDER_LSB_FIRST
                                                                   : XCB_IMAGE_ORDER_MSB_FIRST;
    return xcb_get_setup(connection.get())->image_byte_order != native;
}

}  // namespace

WindowPainter::WindowPainter(Connection& connection, const RenderFormats& formats,
                             xcb_window_t window, std::shared_ptr<const Snapshot> snapshot)
    : connection_(connection),
      formats_(formats),
      window_(window),
      snapshot_(std::move(snapshot)),
      picture_(xcb_generate_id(connection.get())),
      context_(makeContext(connection, window)) {
    xcb_render_create_picture(connection_.get(), picture_, window_,
                              snapshot_ ? formats_.root : formats_.argb, 0, nullptr);
}

WindowPainter::~WindowPainter() {
    freeScratch();
    xcb_free_gc(connection_.get(), context_);
    xcb_render_free_picture(connection_.get(), picture_);
}

void WindowPainter::paint(const PaintPlan& plan) {
    if (snapshot_) {
        restoreBackground(plan);
    }
    fillAreas(plan);
    for (const auto& tile : plan.tiles) {
        paintTile(tile);
    }
}

void WindowPainter::restoreBackground(const PaintPlan& plan) {
    for (const auto& area : plan.areas) {
        copyBackground(area.rect, area.ground);
    }
    for (const auto& tile : plan.tiles) {
        copyBackground(tile.rect, tile.ground);
    }
}

void WindowPainter::copyBackground(const NativeRect& rect, Ground ground) {
    if (ground == Ground::bare) {
        return;
    }
    const xcb_rectangle_t place = rectangleOf(rect);
    xcb_copy_area(connection_.get(), snapshot_->pixmap(), window_, context_, place.x, place.y,
                  place.x, place.y, place.width, place.height);
}

void WindowPainter::fillAreas(const PaintPlan& plan) {
    std::map<ArgbPixel, std::vector<xcb_rectangle_t>> rectangles;
    for (const auto& area : plan.areas) {
        rectangles[area.pixel].push_back(rectangleOf(area.rect));
    }
    const std::uint8_t operation = snapshot_ ? XCB_RENDER_PICT_OP_OVER : XCB_RENDER_PICT_OP_SRC;
    for (const auto& [pixel, places] : rectangles) {
        if (snapshot_ && pixel == 0) {
            continue;
        }
        xcb_render_fill_rectangles(connection_.get(), operation, picture_, colorOf(pixel),
                                   static_cast<std::uint32_t>(places.size()), places.data());
    }
}

void WindowPainter::paintTile(const PaintPlan::Tile& tile) {
    if (!snapshot_) {
        upload(window_, tile, {tile.rect.x, tile.rect.y});
        return;
    }
    growScratch(tile.rect.width, tile.rect.height);
    upload(scratch_, tile, {0, 0});
    const xcb_rectangle_t place = rectangleOf(tile.rect);
    xcb_render_composite(connection_.get(), XCB_RENDER_PICT_OP_OVER, scratchPicture_, XCB_NONE,
                         picture_, 0, 0, 0, 0, place.x, place.y, place.width, place.height);
}

void WindowPainter::upload(xcb_drawable_t target, const PaintPlan::Tile& tile, NativePoint at) {
    std::vector<ArgbPixel> swapped;
    const ArgbPixel* pixels = tile.pixels.data();
    if (hasForeignByteOrder(connection_)) {
        std::transform(tile.pixels.begin(), tile.pixels.end(), std::back_inserter(swapped),
                       swappedBytes);
        pixels = swapped.data();
    }
    const xcb_gcontext_t context = target == window_ ? context_ : scratchContext_;
    const std::int32_t rowsPerUpload = std::max(pixelsPerUpload / tile.rect.width, 1);
    for (std::int32_t row = 0; row < tile.rect.height; row += rowsPerUpload) {
        const std::int32_t rows = std::min(rowsPerUpload, tile.rect.height - row);
        const auto count = static_cast<std::uint32_t>(rows * tile.rect.width);
        xcb_put_image(connection_.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, target, context,
                      static_cast<std::uint16_t>(tile.rect.width), static_cast<std::uint16_t>(rows),
                      static_cast<std::int16_t>(at.x), static_cast<std::int16_t>(at.y + row), 0, 32,
                      count * 4U,
                      reinterpret_cast<const std::uint8_t*>(
                          pixels + static_cast<std::ptrdiff_t>(row) * tile.rect.width));
    }
}

void WindowPainter::growScratch(std::int32_t width, std::int32_t height) {
    if (width <= scratchWidth_ && height <= scratchHeight_) {
        return;
    }
    freeScratch();
    scratchWidth_ = std::max({width, scratchWidth_, 64});
    scratchHeight_ = std::max({height, scratchHeight_, 32});
    scratch_ = xcb_generate_id(connection_.get());
    xcb_create_pixmap(connection_.get(), 32, scratch_, window_,
                      static_cast<std::uint16_t>(scratchWidth_),
                      static_cast<std::uint16_t>(scratchHeight_));
    scratchContext_ = makeContext(connection_, scratch_);
    scratchPicture_ = xcb_generate_id(connection_.get());
    xcb_render_create_picture(connection_.get(), scratchPicture_, scratch_, formats_.argb, 0,
                              nullptr);
}

void WindowPainter::freeScratch() {
    if (scratch_ == XCB_NONE) {
        return;
    }
    xcb_render_free_picture(connection_.get(), scratchPicture_);
    xcb_free_gc(connection_.get(), scratchContext_);
    xcb_free_pixmap(connection_.get(), scratch_);
    scratch_ = XCB_NONE;
}

}  // namespace platform::x11
