#include "platform/x11/pixel_layout.h"

#include <bit>
#include <cstring>

namespace platform::x11 {

namespace {

/// One channel of a pixel as eight bits: of more bits the upper eight, fewer are stretched so that
/// all ones become 255.
std::uint8_t channel(std::uint32_t pixel, std::uint32_t mask) {
    if (mask == 0) {
        return 0;
    }
    const std::uint32_t value = (pixel & mask) >> std::countr_zero(mask);
    const int bits = std::popcount(mask);
    if (bits >= 8) {
        return static_cast<std::uint8_t>(value >> (bits - 8));
    }
    const std::uint32_t highest = (1U << bits) - 1;
    return static_cast<std::uint8_t>((value * 255 + highest / 2) / highest);
}

std::optional<PixelLayout::Format> formatOfDepth(const xcb_setup_t& setup, std::uint8_t depth) {
    for (auto formats = xcb_setup_pixmap_formats_iterator(&setup); formats.rem > 0;
         xcb_format_next(&formats)) {
        if (formats.data->depth == depth) {
            return PixelLayout::Format{depth, formats.data->bits_per_pixel,
                                       formats.data->scanline_pad,
                                       setup.image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST
                                           ? PixelLayout::ByteOrder::leastSignificantFirst
                                           : PixelLayout::ByteOrder::mostSignificantFirst};
        }
    }
    return std::nullopt;
}

}  // namespace

PixelLayout::PixelLayout(const Format& format, const Masks& masks)
    : format_(format), masks_(masks) {}

PixelLayout PixelLayout::withoutAlpha() const {
    PixelLayout layout = *this;
    if (hasAlpha()) {
        layout.format_.depth = 24;
    }
    return layout;
}

std::optional<PixelLayout> PixelLayout::ofVisual(const Connection& connection,
                                                 xcb_visualid_t visual) {
    for (auto depths = xcb_screen_allowed_depths_iterator(&connection.screen()); depths.rem > 0;
         xcb_depth_next(&depths)) {
        for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem > 0;
             xcb_visualtype_next(&visuals)) {
            const xcb_visualtype_t& type = *visuals.data;
            if (type.visual_id != visual) {
                continue;
            }
            const auto format = formatOfDepth(*xcb_get_setup(connection.get()), depths.data->depth);
            const bool hasColors = type._class == XCB_VISUAL_CLASS_TRUE_COLOR ||
                                   type._class == XCB_VISUAL_CLASS_DIRECT_COLOR;
            if (!format || format->bitsPerPixel < 16 || !hasColors) {
                return std::nullopt;
            }
            return PixelLayout(*format, {type.red_mask, type.green_mask, type.blue_mask});
        }
    }
    return std::nullopt;
}

std::size_t PixelLayout::bytesPerRow(int width) const {
    const auto bits =
        static_cast<std::size_t>(width) * static_cast<std::size_t>(format_.bitsPerPixel);
    const auto pad = static_cast<std::size_t>(format_.scanlinePad);
    return (bits + pad - 1) / pad * pad / 8;
}

bool PixelLayout::isDirect() const {
    return format_.bitsPerPixel == 32 && format_.byteOrder == ByteOrder::leastSignificantFirst &&
           masks_.red == 0xff0000 && masks_.green == 0xff00 && masks_.blue == 0xff;
}

std::uint32_t PixelLayout::pixelAt(const std::uint8_t* bytes) const {
    const int count = format_.bitsPerPixel / 8;
    std::uint32_t pixel = 0;
    for (int index = 0; index < count; ++index) {
        const int place =
            format_.byteOrder == ByteOrder::leastSignificantFirst ? index : count - 1 - index;
        pixel |= static_cast<std::uint32_t>(bytes[index]) << (8 * place);
    }
    return pixel;
}

void PixelLayout::convertRow(const std::uint8_t* source, std::uint8_t* target, int width) const {
    if (isDirect() && hasAlpha()) {
        std::memcpy(target, source, static_cast<std::size_t>(width) * 4);
        return;
    }
    const std::uint32_t alphaMask = ~(masks_.red | masks_.green | masks_.blue);
    for (int x = 0; x < width; ++x, source += format_.bitsPerPixel / 8, target += 4) {
        const std::uint32_t pixel = pixelAt(source);
        target[0] = channel(pixel, masks_.blue);
        target[1] = channel(pixel, masks_.green);
        target[2] = channel(pixel, masks_.red);
        target[3] = hasAlpha() ? channel(pixel, alphaMask) : std::uint8_t{255};
    }
}

}  // namespace platform::x11
