#include "platform/x11/pixel_layout.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace platform::x11 {

namespace {

/// One channel of a pixel as eight bits: of more bits the upper eight, fewer are stretched so that
/// all ones become 255.
class Channel {
  public:
    explicit Channel(std::uint32_t mask)
        : mask_(mask),
          bits_(std::popcount(mask)),
          shift_(mask == 0 ? 0 : std::countr_zero(mask) + std::max(bits_ - 8, 0)),
          highest_((1U << std::min(bits_, 8)) - 1) {}

    [[nodiscard]] std::uint8_t of(std::uint32_t pixel) const {
        const std::uint32_t value = (pixel & mask_) >> shift_;
        if (bits_ >= 8) {
            return static_cast<std::uint8_t>(value);
        }
        return mask_ == 0 ? std::uint8_t{0}
                          : static_cast<std::uint8_t>((value * 255 + highest_ / 2) / highest_);
    }

  private:
    std::uint32_t mask_;
    int bits_;
    int shift_;
    std::uint32_t highest_;
};

/// Pixels that are right but for their fourth byte, which becomes 255. A word at a time, which the
/// compiler makes several of.
void copyOpaque(const std::uint8_t* source, std::uint8_t* target, int width) {
    constexpr std::array<std::uint8_t, 4> alphaBytes{0, 0, 0, 255};
    const auto alpha = std::bit_cast<std::uint32_t>(alphaBytes);
    for (int x = 0; x < width; ++x, source += 4, target += 4) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, source, sizeof pixel);
        pixel |= alpha;
        std::memcpy(target, &pixel, sizeof pixel);
    }
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
        std::memmove(target, source, static_cast<std::size_t>(width) * 4);
        return;
    }
    if (isDirect()) {
        copyOpaque(source, target, width);
        return;
    }
    const Channel red(masks_.red);
    const Channel green(masks_.green);
    const Channel blue(masks_.blue);
    const Channel alpha(~(masks_.red | masks_.green | masks_.blue));
    for (int x = 0; x < width; ++x, source += format_.bitsPerPixel / 8, target += 4) {
        const std::uint32_t pixel = pixelAt(source);
        target[0] = blue.of(pixel);
        target[1] = green.of(pixel);
        target[2] = red.of(pixel);
        target[3] = hasAlpha() ? alpha.of(pixel) : std::uint8_t{255};
    }
}

}  // namespace platform::x11
