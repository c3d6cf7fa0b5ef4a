#include "platform/x11/pixel_memory.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <mutex>
#include <utility>

namespace platform::x11 {

namespace {

constexpr std::size_t step = std::size_t{1} << 20U;
constexpr std::size_t keptSize = 3 * step;
/// The server needs some 4 ms for it, in which nobody else is served.
constexpr std::size_t largestPreparation = 4 * step;
constexpr std::chrono::milliseconds shrinkDelay{2000};

}  // namespace

struct PixelMemory::Segment {
    Segment() = default;
    ~Segment() { munmap(bytes, size); }
    Segment(const Segment&) = delete;
    Segment& operator=(const Segment&) = delete;

    std::uint8_t* bytes = nullptr;
    std::size_t size = 0;
    /// What may have pages behind it.
    std::size_t usedSize = 0;
    xcb_shm_seg_t id = XCB_NONE;
};

struct PixelMemory::Returns {
    std::mutex mutex;
    /// Null when the memory's owner is gone; the segments then just end.
    PixelMemory* memory = nullptr;
};

PixelMemory::PixelMemory(Connection& connection, base::MainQueue& mainQueue)
    : connection_(connection), mainQueue_(mainQueue), returns_(std::make_shared<Returns>()) {
    returns_->memory = this;
}

PixelMemory::~PixelMemory() {
    const std::lock_guard lock(returns_->mutex);
    returns_->memory = nullptr;
    if (idle_) {
        detach(*idle_);
    }
}

std::optional<PixelMemory::Lease> PixelMemory::take(std::size_t size) {
    ++useNumber_;
    std::shared_ptr<Segment> segment = std::move(idle_);
    if (segment && segment->size < size) {
        detach(*segment);
        segment.reset();
    }
    if (!segment) {
        segment = makeSegment(size);
    }
    if (!segment) {
        return std::nullopt;
    }
    segment->usedSize = std::max(segment->usedSize, size);
    return lease(std::move(segment));
}

std::size_t PixelMemory::screenSize() const {
    const auto& screen = connection_.screen();
    return std::size_t{screen.width_in_pixels} * screen.height_in_pixels * 4;
}

void PixelMemory::prepare(std::size_t size) {
    if (!idle_) {
        idle_ = makeSegment(screenSize());
    }
    if (!idle_ || idle_->id == XCB_NONE) {
        return;
    }
    const std::size_t whole = std::min((size + step - 1) / step * step, screenSize());
    const std::size_t wanted = std::min({whole, idle_->usedSize + largestPreparation, idle_->size});
    if (wanted <= idle_->usedSize) {
        return;
    }
    // Rows of the screen, as many as fill what is missing. A screen of fewer bits fills less, and
    // nothing past the end.
    const auto& screen = connection_.screen();
    const std::size_t row = std::size_t{screen.width_in_pixels} * 4;
    const std::size_t rows = (wanted - idle_->usedSize) / row;
    if (rows == 0) {
        return;
    }
    const auto cookie =
        xcb_shm_get_image(connection_.get(), screen.root, 0, 0, screen.width_in_pixels,
                          static_cast<std::uint16_t>(rows), ~0U, XCB_IMAGE_FORMAT_Z_PIXMAP,
                          idle_->id, static_cast<std::uint32_t>(idle_->usedSize));
    xcb_discard_reply(connection_.get(), cookie.sequence);
    idle_->usedSize += rows * row;
    ++useNumber_;
    shrinkLater();
}

bool PixelMemory::canShare() {
    if (sharing_ == Sharing::untried) {
        sharing_ = Sharing::impossible;
        const auto* extension = xcb_get_extension_data(connection_.get(), &xcb_shm_id);
        if (extension != nullptr && extension->present != 0) {
            const Reply<xcb_shm_query_version_reply_t> version(xcb_shm_query_version_reply(
                connection_.get(), xcb_shm_query_version(connection_.get()), nullptr));
            // Segments given as file descriptors came with version 1.2.
            const bool takesDescriptors =
                version && (version->major_version > 1 ||
                            (version->major_version == 1 && version->minor_version >= 2));
            sharing_ = takesDescriptors ? Sharing::possible : Sharing::impossible;
        }
    }
    return sharing_ == Sharing::possible;
}

std::shared_ptr<PixelMemory::Segment> PixelMemory::makeSegment(std::size_t size) {
    // Room for the whole screen: pages that nobody has written to cost nothing.
    const std::size_t rounded = (std::max(size, screenSize()) + step - 1) / step * step;
    const int descriptor = memfd_create("lumaframe-picture", MFD_CLOEXEC);
    if (descriptor < 0) {
        return nullptr;
    }
    void* bytes = MAP_FAILED;
    if (ftruncate(descriptor, static_cast<off_t>(rounded)) == 0) {
        bytes = mmap(nullptr, rounded, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    }
    if (bytes == MAP_FAILED) {
        close(descriptor);
        return nullptr;
    }
    auto segment = std::make_shared<Segment>();
    segment->bytes = static_cast<std::uint8_t*>(bytes);
    segment->size = rounded;
    if (!canShare()) {
        close(descriptor);
        return segment;
    }
    const xcb_shm_seg_t id = xcb_generate_id(connection_.get());
    // The library closes the descriptor. Over a network connection there is no way to send it.
    const auto attached = xcb_shm_attach_fd_checked(connection_.get(), id, descriptor, 0);
    const Reply<xcb_generic_error_t> error(xcb_request_check(connection_.get(), attached));
    if (error) {
        sharing_ = Sharing::impossible;
    } else {
        segment->id = id;
    }
    return segment;
}

PixelMemory::Lease PixelMemory::lease(std::shared_ptr<Segment> segment) {
    std::uint8_t* const bytes = segment->bytes;
    const xcb_shm_seg_t id = segment->id;
    // What the picture holds is not the segment but its way back.
    std::shared_ptr<const void> owner(
        bytes, [returns = returns_, segment = std::move(segment)](const void*) {
            const std::lock_guard lock(returns->mutex);
            if (returns->memory != nullptr) {
                returns->memory->mainQueue_.post([returns, segment] {
                    if (returns->memory != nullptr) {
                        returns->memory->takeBack(segment);
                    }
                });
            }
        });
    return {bytes, id, std::move(owner)};
}

std::size_t PixelMemory::idleSize() const {
    return idle_ ? idle_->usedSize : 0;
}

void PixelMemory::detach(const Segment& segment) {
    if (segment.id != XCB_NONE) {
        xcb_shm_detach(connection_.get(), segment.id);
        connection_.flush();
    }
}

void PixelMemory::takeBack(std::shared_ptr<Segment> segment) {
    if (idle_ && idle_->size >= segment->size) {
        detach(*segment);
        return;
    }
    if (idle_) {
        detach(*idle_);
    }
    idle_ = std::move(segment);
    shrinkLater();
}

void PixelMemory::shrinkLater() {
    mainQueue_.postAfter(shrinkDelay,
                         alive_.guard([this, number = useNumber_] { shrink(number); }));
}

void PixelMemory::shrink(std::uint64_t useNumber) {
    if (!idle_ || useNumber != useNumber_) {
        return;
    }
    if (idle_->usedSize > keptSize) {
        // Frees the pages for the server too; the segment stays as large as it is and warms up
        // again.
        madvise(idle_->bytes + keptSize, idle_->size - keptSize, MADV_REMOVE);
        idle_->usedSize = keptSize;
    }
    // Nobody needs what the screen showed any more.
    std::memset(idle_->bytes, 0, idle_->usedSize);
}

}  // namespace platform::x11
