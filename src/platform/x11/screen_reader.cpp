#include "platform/x11/screen_reader.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "platform/x11/native_region.h"

namespace platform::x11 {

namespace {

/// Enough for a wall of eight 4K displays; more is a mistake of the caller.
constexpr std::size_t largestPicture = std::size_t{512} << 20U;
constexpr std::uint32_t allPlanes = ~0U;

std::size_t imageSize(const NativeRect& area) {
    return static_cast<std::size_t>(area.width) * static_cast<std::size_t>(area.height) * 4;
}

/// Whether the server can write the part into the picture itself.
bool fitsInPlace(const PixelSource& source, const NativeRect& part, const NativeRect& area,
                 Backdrop backdrop) {
    return part.width == area.width && source.layout.isDirect() &&
           (backdrop == Backdrop::opaqueBlack || source.layout.hasAlpha());
}

/// Where in the memory the parts are written that the server cannot write into the picture itself,
/// and how large that memory has to be.
struct Aside {
    std::size_t offset = 0;
    std::size_t memorySize = 0;
};

Aside placeAside(const NativeRect& area, const std::vector<PixelSource>& sources,
                 Backdrop backdrop) {
    std::size_t size = 0;
    int partCount = 0;
    bool hasWords = true;
    for (const PixelSource& source : sources) {
        const NativeRect part = intersection(source.place, area);
        if (part.isEmpty()) {
            continue;
        }
        ++partCount;
        if (!fitsInPlace(source, part, area, backdrop)) {
            size = std::max(size, source.layout.bytesPerRow(part.width) *
                                      static_cast<std::size_t>(part.height));
            hasWords = hasWords && source.layout.bitsPerPixel() == 32;
        }
    }
    const std::size_t picture = imageSize(area);
    // A part that is alone lies at the end of the picture: its rows are moved towards the
    // beginning, the first one first, and none of them onto one that is still to be moved. Fresh
    // memory costs more than the pixels.
    return partCount == 1 && hasWords ? Aside{picture - size, picture}
                                      : Aside{picture, picture + size};
}

void fill(const Canvas& canvas, const NativeRect& area, const NativeRegion& region,
          Backdrop backdrop) {
    const std::uint8_t alpha = backdrop == Backdrop::opaqueBlack ? 255 : 0;
    for (const NativeRect& part : region.parts()) {
        for (int y = part.y - area.y; y < part.y - area.y + part.height; ++y) {
            std::uint8_t* pixel = canvas.row(y) + static_cast<std::size_t>(part.x - area.x) * 4;
            for (int x = 0; x < part.width; ++x, pixel += 4) {
                pixel[0] = pixel[1] = pixel[2] = 0;
                pixel[3] = alpha;
            }
        }
    }
}

}  // namespace

base::Image Canvas::image(base::AlphaChannel alphaChannel,
                          std::shared_ptr<const base::ColorSpace> colorSpace) const {
    return {width, height, bytesPerRow(), pixels, alphaChannel, owner, std::move(colorSpace)};
}

ScreenReader::ScreenReader(Connection& connection, base::MainQueue& mainQueue)
    : connection_(connection), memory_(connection, mainQueue) {}

base::Result<Canvas> ScreenReader::read(const NativeRect& area,
                                        const std::vector<PixelSource>& sources,
                                        Backdrop backdrop) {
    if (area.isEmpty() || imageSize(area) > largestPicture) {
        return base::Error{base::ErrorKind::invalid,
                           "The picture would be empty or larger than any screen."};
    }
    const Aside aside = placeAside(area, sources, backdrop);
    const auto lease = memory_.take(aside.memorySize);
    if (!lease) {
        return base::Error{base::ErrorKind::failed, "There is not enough memory for the picture."};
    }
    const Canvas canvas{area.width, area.height, lease->bytes, lease->owner};
    NativeRegion uncovered(area);
    for (const PixelSource& source : sources) {
        const NativeRect part = intersection(source.place, area);
        if (part.isEmpty()) {
            continue;
        }
        uncovered.subtract(part);
        const bool isInPlace = fitsInPlace(source, part, area, backdrop);
        const std::size_t offset =
            isInPlace ? static_cast<std::size_t>(part.y - area.y) * canvas.bytesPerRow()
                      : aside.offset;
        if (!readPart(source, part, *lease, offset)) {
            return base::Error{base::ErrorKind::failed, "The X server did not give the pixels."};
        }
        for (int y = 0; !isInPlace && y < part.height; ++y) {
            const auto sourceRow =
                static_cast<std::size_t>(y) * source.layout.bytesPerRow(part.width);
            source.layout.convertRow(
                lease->bytes + offset + sourceRow,
                canvas.row(part.y - area.y + y) + static_cast<std::size_t>(part.x - area.x) * 4,
                part.width);
        }
    }
    fill(canvas, area, uncovered, backdrop);
    return canvas;
}

bool ScreenReader::readPart(const PixelSource& source, const NativeRect& part,
                            const PixelMemory::Lease& lease, std::size_t offset) {
    const auto x = static_cast<std::int16_t>(part.x - source.place.x + source.origin.x);
    const auto y = static_cast<std::int16_t>(part.y - source.place.y + source.origin.y);
    const auto width = static_cast<std::uint16_t>(part.width);
    const auto height = static_cast<std::uint16_t>(part.height);
    if (lease.segment != XCB_NONE) {
        const auto cookie = xcb_shm_get_image(connection_.get(), source.drawable, x, y, width,
                                              height, allPlanes, XCB_IMAGE_FORMAT_Z_PIXMAP,
                                              lease.segment, static_cast<std::uint32_t>(offset));
        xcb_generic_error_t* error = nullptr;
        const Reply<xcb_shm_get_image_reply_t> reply(
            xcb_shm_get_image_reply(connection_.get(), cookie, &error));
        std::free(error);
        return reply != nullptr;
    }
    const auto cookie = xcb_get_image(connection_.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, source.drawable,
                                      x, y, width, height, allPlanes);
    xcb_generic_error_t* error = nullptr;
    const Reply<xcb_get_image_reply_t> reply(
        xcb_get_image_reply(connection_.get(), cookie, &error));
    std::free(error);
    const auto expected =
        source.layout.bytesPerRow(part.width) * static_cast<std::size_t>(part.height);
    if (!reply || static_cast<std::size_t>(xcb_get_image_data_length(reply.get())) < expected) {
        return false;
    }
    std::memcpy(lease.bytes + offset, xcb_get_image_data(reply.get()), expected);
    return true;
}

}  // namespace platform::x11
