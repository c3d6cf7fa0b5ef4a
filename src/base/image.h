#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace base {

/// A display's colour space: the name the capture request carries and the ICC profile behind it.
struct ColorSpace {
    std::string name;
    std::vector<std::uint8_t> iccProfile;
    friend bool operator==(const ColorSpace&, const ColorSpace&) = default;
};

enum class AlphaChannel {
    /// The fourth byte of each pixel carries no meaning; the picture is opaque.
    none,
    /// The fourth byte is the alpha and the colours are multiplied with it.
    premultiplied,
};

/// An immutable picture: rows from the top, four bytes a pixel in the order blue, green, red,
/// alpha.
///
/// Copies share the pixels; `owner` keeps them alive (a shared-memory segment, a vector) and is
/// released with the last copy, on whatever thread that happens.
class Image {
  public:
    Image() = default;
    Image(int width, int height, std::size_t bytesPerRow, const std::uint8_t* pixels,
          AlphaChannel alphaChannel, std::shared_ptr<const void> owner,
          std::shared_ptr<const ColorSpace> colorSpace = nullptr)
        : width_(width),
          height_(height),
          bytesPerRow_(bytesPerRow),
          pixels_(pixels),
          alphaChannel_(alphaChannel),
          owner_(std::move(owner)),
          colorSpace_(std::move(colorSpace)) {}

    /// An image that owns a copy-free vector of `width * height * 4` bytes.
    static Image fromPixels(int width, int height, std::vector<std::uint8_t> pixels,
                            AlphaChannel alphaChannel,
                            std::shared_ptr<const ColorSpace> colorSpace = nullptr);

    /// In pixels.
    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }
    [[nodiscard]] std::size_t bytesPerRow() const { return bytesPerRow_; }
    [[nodiscard]] bool isEmpty() const { return width_ <= 0 || height_ <= 0; }
    [[nodiscard]] AlphaChannel alphaChannel() const { return alphaChannel_; }
    /// `width() * 4` meaningful bytes of row `y`, counted from the top.
    [[nodiscard]] const std::uint8_t* row(int y) const {
        return pixels_ + static_cast<std::size_t>(y) * bytesPerRow_;
    }
    /// Null means sRGB.
    [[nodiscard]] const std::shared_ptr<const ColorSpace>& colorSpace() const {
        return colorSpace_;
    }

  private:
    int width_ = 0;
    int height_ = 0;
    std::size_t bytesPerRow_ = 0;
    const std::uint8_t* pixels_ = nullptr;
    AlphaChannel alphaChannel_ = AlphaChannel::none;
    std::shared_ptr<const void> owner_;
    std::shared_ptr<const ColorSpace> colorSpace_;
};

}  // namespace base
