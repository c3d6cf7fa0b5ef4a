#pragma once

#include <cstddef>
#include <cstdint>

#include "base/geometry.h"
#include "base/result.h"

struct AVFrame;
struct SwsContext;

namespace platform::video {

/// Makes pictures as a view wants them from pictures as they were coded. One thread.
class FrameScaler {
  public:
    FrameScaler() = default;
    ~FrameScaler();
    FrameScaler(const FrameScaler&) = delete;
    FrameScaler& operator=(const FrameScaler&) = delete;

    /// Writes what of `frame` fills a view of `size`, in the order blue, green, red, 255, rows from
    /// the top and `bytesPerRow` apart, which is `rowLength` of the size. Cuts `frame` itself.
    base::Status scale(AVFrame& frame, base::PixelSize size, std::uint8_t* pixels,
                       std::size_t bytesPerRow);

  private:
    SwsContext* context_ = nullptr;
};

}  // namespace platform::video
