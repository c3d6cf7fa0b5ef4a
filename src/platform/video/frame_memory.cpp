#include "platform/video/frame_memory.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

namespace platform::video {

namespace {

/// 3840 x 2160, in any proportion.
constexpr std::int64_t maximumPixelCount = std::int64_t{3840} * 2160;
constexpr int maximumLength = 8192;
constexpr std::size_t rowAlignment = 64;
/// Padding of rows, and what the scaler may write beyond the last one, included.
constexpr std::size_t slotLength =
    static_cast<std::size_t>(maximumPixelCount) * 4 + maximumLength * rowAlignment + 4096;
constexpr std::size_t memoryLength = slotLength * slotCount;

/// Without these one side could pull the memory away from under the other.
constexpr int lengthSeals = F_SEAL_SHRINK | F_SEAL_GROW;

/// MFD_NOEXEC_SEAL of Linux 6.3, which the C library's headers may not know yet.
constexpr unsigned noExecutionSeal = 8;

}  // namespace

std::size_t rowLength(base::PixelSize size) {
    const std::size_t length = static_cast<std::size_t>(size.width) * 4;
    return (length + rowAlignment - 1) / rowAlignment * rowAlignment;
}

bool fitsSlot(base::PixelSize size) {
    return !size.isEmpty() && size.width <= maximumLength && size.height <= maximumLength &&
           std::int64_t{size.width} * size.height <= maximumPixelCount;
}

base::Result<OwnedDescriptor> makeFrameMemory() {
    constexpr unsigned flags = MFD_CLOEXEC | MFD_ALLOW_SEALING;
    OwnedDescriptor memory(::memfd_create("lumaframe-video", flags | noExecutionSeal));
    if (!memory.isOpen() && errno == EINVAL) {
        memory = OwnedDescriptor(::memfd_create("lumaframe-video", flags));
    }
    if (!memory.isOpen() || ::ftruncate(memory.number(), static_cast<off_t>(memoryLength)) != 0 ||
        ::fcntl(memory.number(), F_ADD_SEALS, lengthSeals | F_SEAL_SEAL) != 0) {
        return base::Error{
            base::ErrorKind::failed,
            std::string("There is no memory for pictures: ") + std::strerror(errno) + "."};
    }
    return memory;
}

std::shared_ptr<FrameMemory> FrameMemory::map(int descriptor, Access access) {
    const int seals = ::fcntl(descriptor, F_GET_SEALS);
    struct stat status {};
    if (seals < 0 || (seals & lengthSeals) != lengthSeals || ::fstat(descriptor, &status) != 0 ||
        status.st_size != static_cast<off_t>(memoryLength)) {
        return nullptr;
    }
    const int protection = access == Access::write ? PROT_READ | PROT_WRITE : PROT_READ;
    void* const address = ::mmap(nullptr, memoryLength, protection, MAP_SHARED, descriptor, 0);
    return address == MAP_FAILED ? nullptr : std::shared_ptr<FrameMemory>(new FrameMemory(address));
}

FrameMemory::~FrameMemory() {
    ::munmap(address_, memoryLength);
}

std::uint8_t* FrameMemory::slot(int slot) const {
    return static_cast<std::uint8_t*>(address_) + slotLength * static_cast<std::size_t>(slot);
}

base::Image imageIn(const std::shared_ptr<FrameMemory>& memory, int slot, base::PixelSize size) {
    return {size.width, size.height, rowLength(size), memory->slot(slot), base::AlphaChannel::none,
            memory};
}

}  // namespace platform::video
