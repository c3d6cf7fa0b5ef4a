#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/x11/connection.h"

namespace platform::x11 {

/// How the server sends the pixels of one visual, and the way from there to the pixels of
/// `base::Image` (blue, green, red, alpha, a byte each). A value; any thread.
class PixelLayout {
  public:
    enum class ByteOrder { leastSignificantFirst, mostSignificantFirst };
    struct Format {
        /// Significant bits of a pixel.
        int depth = 24;
        /// 16, 24 or 32.
        int bitsPerPixel = 32;
        /// Rows are padded to a multiple of so many bits.
        int scanlinePad = 32;
        ByteOrder byteOrder = ByteOrder::leastSignificantFirst;
    };
    struct Masks {
        std::uint32_t red = 0xff0000;
        std::uint32_t green = 0xff00;
        std::uint32_t blue = 0xff;
    };

    PixelLayout(const Format& format, const Masks& masks);
    /// None for visuals whose pixels are numbers of palette entries.
    static std::optional<PixelLayout> ofVisual(const Connection& connection, xcb_visualid_t visual);

    [[nodiscard]] std::size_t bytesPerRow(int width) const;
    /// Whether the rows are already what `convertRow` would make of them; the fourth byte of a
    /// visual without alpha is then anything.
    [[nodiscard]] bool isDirect() const;
    [[nodiscard]] int bitsPerPixel() const { return format_.bitsPerPixel; }
    [[nodiscard]] bool hasAlpha() const { return format_.depth == 32; }
    /// The same pixels, whatever their alpha says.
    [[nodiscard]] PixelLayout withoutAlpha() const;
    /// Writes `width * 4` bytes; without an alpha channel the fourth byte of each pixel is 255.
    /// Pixels of 32 bits may be moved forwards inside of one buffer, towards its beginning.
    void convertRow(const std::uint8_t* source, std::uint8_t* target, int width) const;

  private:
    [[nodiscard]] std::uint32_t pixelAt(const std::uint8_t* bytes) const;

    Format format_;
    Masks masks_;
};

}  // namespace platform::x11
