#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "base/geometry.h"
#include "base/image.h"
#include "base/result.h"
#include "platform/helper/owned_descriptor.h"

namespace platform::video {

using helper::OwnedDescriptor;

/// One picture is shown while the next one is made.
inline constexpr int slotCount = 2;

/// The bytes of a row: rounded up, since the scaler writes whole vectors.
std::size_t rowLength(base::PixelSize size);

/// Whether a picture of that size has room in a slot: not empty, and no larger than a 4K display.
bool fitsSlot(base::PixelSize size);

/// The memory through which pictures come, made for the largest ones: its length is sealed, and
/// only what was written once takes room. The copies of its descriptor may go to another process.
base::Result<OwnedDescriptor> makeFrameMemory();

/// Frame memory as one process sees it. Any thread.
class FrameMemory {
  public:
    enum class Access { read, write };
    /// Nothing when the descriptor is not such memory.
    static std::shared_ptr<FrameMemory> map(int descriptor, Access access);
    ~FrameMemory();
    FrameMemory(const FrameMemory&) = delete;
    FrameMemory& operator=(const FrameMemory&) = delete;

    /// Where the picture of slot `slot` begins, 0 to `slotCount` - 1.
    [[nodiscard]] std::uint8_t* slot(int slot) const;

  private:
    explicit FrameMemory(void* address) : address_(address) {}
    void* address_;
};

/// The picture in a slot; it keeps the memory mapped, but not its pixels from changing.
base::Image imageIn(const std::shared_ptr<FrameMemory>& memory, int slot, base::PixelSize size);

}  // namespace platform::video
