#pragma once

#include <cstddef>
#include <cstdint>

#include "base/image.h"

namespace platform::png {

/// How the bytes of one pixel follow each other in the file; the value is their number.
enum class PixelLayout : std::uint8_t { rgb = 3, rgba = 4 };

/// A picture's rows in the form that the file stores: red, green, blue and, where the picture is
/// not opaque, the alpha, with colours that are no longer multiplied by it.
///
/// Reading changes nothing, so that several threads may read at once. The image must outlive this.
class PixelRows {
  public:
    /// Looks through the alpha channel, if there is one: a picture that is opaque throughout is
    /// stored without it.
    explicit PixelRows(const base::Image& image);

    [[nodiscard]] PixelLayout layout() const { return layout_; }
    [[nodiscard]] int height() const { return image_.height(); }
    [[nodiscard]] std::size_t bytesPerPixel() const { return static_cast<std::size_t>(layout_); }
    [[nodiscard]] std::size_t bytesPerRow() const {
        return static_cast<std::size_t>(image_.width()) * bytesPerPixel();
    }
    /// Writes `bytesPerRow()` bytes of row `y`, counted from the top.
    void read(int y, std::uint8_t* destination) const;

  private:
    const base::Image& image_;
    PixelLayout layout_;
};

/// `color * 255 / alpha`, rounded half up; 0 where `alpha` is 0. A colour above its alpha, which
/// no correct picture has, counts as the full colour.
[[nodiscard]] std::uint8_t unpremultiplied(std::uint8_t color, std::uint8_t alpha);

}  // namespace platform::png
