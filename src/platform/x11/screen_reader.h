#pragma once

#include <memory>
#include <vector>

#include "base/image.h"
#include "base/result.h"
#include "platform/x11/connection.h"
#include "platform/x11/native_geometry.h"
#include "platform/x11/pixel_layout.h"
#include "platform/x11/pixel_memory.h"

namespace platform::x11 {

/// A drawable of the server and where it lies among the others that make up a picture.
struct PixelSource {
    xcb_drawable_t drawable = XCB_NONE;
    PixelLayout layout;
    NativeRect place{};
    /// The upper left pixel of `place` in the drawable.
    NativePoint origin{};
};

/// Pixels that can still be painted on: four bytes each, blue, green, red, alpha.
struct Canvas {
    int width = 0;
    int height = 0;
    std::uint8_t* pixels = nullptr;
    /// Keeps the pixels alive.
    std::shared_ptr<const void> owner;

    [[nodiscard]] std::size_t bytesPerRow() const { return static_cast<std::size_t>(width) * 4; }
    [[nodiscard]] std::uint8_t* row(int y) const {
        return pixels + static_cast<std::size_t>(y) * bytesPerRow();
    }
    [[nodiscard]] base::Image image(base::AlphaChannel alphaChannel,
                                    std::shared_ptr<const base::ColorSpace> colorSpace) const;
};

/// What the pixels are that no source covers, and whether the alpha of the others counts.
enum class Backdrop {
    /// The fourth byte of each pixel has no meaning.
    opaqueBlack,
    /// Every pixel has its alpha.
    transparent,
};

/// Reads pixels from the server. Main thread; waits for the server.
class ScreenReader {
  public:
    ScreenReader(Connection& connection, base::MainQueue& mainQueue);

    /// The rectangle `area` of what the sources show; they do not overlap.
    base::Result<Canvas> read(const NativeRect& area, const std::vector<PixelSource>& sources,
                              Backdrop backdrop);

    /// A picture of this many bytes will probably be read soon.
    void prepare(std::size_t size) { memory_.prepare(size); }

  private:
    bool readPart(const PixelSource& source, const NativeRect& part,
                  const PixelMemory::Lease& lease, std::size_t offset);

    Connection& connection_;
    PixelMemory memory_;
};

}  // namespace platform::x11
