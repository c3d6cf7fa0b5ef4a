#include "platform/x11/x11_capture_service.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <utility>
#include <variant>

#include "platform/x11/capture_region.h"
#include "platform/x11/content_list.h"
#include "platform/x11/decoration_source.h"
#include "platform/x11/native_region.h"
#include "platform/x11/pixel_layout.h"

namespace platform::x11 {

namespace {

/// Up to a 4K display, which is delivered within 70 ms, the overlay ends behind the whole delivery
/// and not before the picture is encoded.
constexpr std::int64_t mostPixelsDelivered = 3840L * 2160;
/// A clipboard manager, or whoever pastes at once, asks within a few milliseconds, and takes a
/// mebibyte in each.
constexpr std::chrono::milliseconds pasteTime{20};

LateRequests::Until endOfHold(const base::Result<base::Image>& picture) {
    const bool isLarge =
        picture &&
        std::int64_t{picture.value().width()} * picture.value().height() > mostPixelsDelivered;
    return isLarge ? LateRequests::Until::claimed : LateRequests::Until::delivered;
}

/// The colour space of the name among those of the displays; none stands for sRGB.
std::shared_ptr<const base::ColorSpace> colorSpaceNamed(
    const std::optional<std::string>& name, const std::vector<DisplayBacking>& displays) {
    for (const DisplayBacking& candidate : displays) {
        const auto& colorSpace = candidate.display.colorSpace;
        if (name && colorSpace && colorSpace->name == *name) {
            return colorSpace;
        }
    }
    return nullptr;
}

}  // namespace

X11CaptureService::X11CaptureService(Connection& connection, base::MainQueue& mainQueue,
                                     OverlayStage& stage, LayoutSource layout)
    : connection_(connection),
      mainQueue_(mainQueue),
      stage_(stage),
      layout_(std::move(layout)),
      reader_(connection, mainQueue),
      windowCapture_(connection, reader_) {
    stage_.onSelection(alive_.guard(
        [this](std::size_t pixels) { reader_.prepare(pixels * sizeof(std::uint32_t)); }));
}

void X11CaptureService::shareableContent(capture::DesktopWindows desktopWindows,
                                         capture::WindowVisibility visibility,
                                         ContentCompletion completion) {
    // Listed now and not in a later turn, while the overlay that asks is still up.
    auto content = listContent(connection_, stage_, layout_(), desktopWindows, visibility);
    mainQueue_.post(alive_.guard([isLost = connection_.isLost(), content = std::move(content),
                                  completion = std::move(completion)] {
        if (isLost) {
            completion(std::nullopt,
                       base::Error{base::ErrorKind::unavailable, "The X server is gone."});
        } else {
            completion(content, std::nullopt);
        }
    }));
}

void X11CaptureService::captureImage(const capture::ContentFilter& filter,
                                     const capture::StreamConfiguration& configuration,
                                     ImageCompletion completion) {
    if (configuration.cursor != capture::CursorVisibility::hidden ||
        configuration.scaling != capture::Scaling::none) {
        return finish(
            base::Error{base::ErrorKind::unavailable,
                        "On X11 pictures are neither scaled nor have the pointer in them."},
            std::move(completion));
    }
    if (const auto* display = std::get_if<capture::DisplayFilter>(&filter)) {
        captureDisplay(display->display, configuration, std::move(completion));
    } else {
        captureWindow(std::get<capture::WindowFilter>(filter).window, configuration,
                      std::move(completion));
    }
}

void X11CaptureService::captureDisplay(const capture::ShareableDisplay& display,
                                       const capture::StreamConfiguration& configuration,
                                       ImageCompletion completion) {
    const auto backing = std::static_pointer_cast<const DisplayBacking>(display.backing);
    if (!backing) {
        return finish(base::Error{base::ErrorKind::notFound, "The display is not in the list."},
                      std::move(completion));
    }
    const auto region = captureRegion(backing->display, configuration);
    if (!region) {
        return finish(base::Error{base::ErrorKind::invalid,
                                  "The region does not lie within the reach of the screen."},
                      std::move(completion));
    }
    // Whatever is named: the pixels are given as they are, in the display's own colours. A
    // selection can begin on one display and be taken from another.
    auto colorSpace = backing->display.colorSpace;
    if (backing->snapshot) {
        return finish(readDisplay(*backing, *region, std::move(colorSpace)), std::move(completion));
    }
    const NativeRect visible = intersection(*region, backing->display.native);
    stage_.whenClear(
        visible, alive_.guard([this, backing, region = *region, colorSpace = std::move(colorSpace),
                               completion = std::move(completion)] {
            finish(readDisplay(*backing, region, colorSpace), completion);
        }));
}

void X11CaptureService::captureWindow(const capture::ShareableWindow& window,
                                      const capture::StreamConfiguration& configuration,
                                      ImageCompletion completion) {
    const auto backing = std::static_pointer_cast<const WindowBacking>(window.backing);
    if (!backing) {
        return finish(base::Error{base::ErrorKind::notFound, "The window is not in the list."},
                      std::move(completion));
    }
    const auto shadow = configuration.singleWindowShadow;
    auto colorSpace = colorSpaceNamed(configuration.colorSpaceName, *backing->displays);
    const auto decoration = backing->window.frame.hasDecoration() ? decorationSource(connection_)
                                                                  : DecorationSource::pixmap;
    if (decoration == DecorationSource::pixmap) {
        auto ownPicture = windowCapture_.fromPixmap(*backing, decoration, shadow, colorSpace);
        if (ownPicture) {
            return finish(std::move(*ownPicture), std::move(completion));
        }
    }
    stage_.whenClear(
        backing->window.frame.visible,
        alive_.guard([this, backing, decoration, shadow, colorSpace = std::move(colorSpace),
                      completion = std::move(completion)] {
            auto ownPicture =
                decoration == DecorationSource::screen
                    ? windowCapture_.fromPixmap(*backing, decoration, shadow, colorSpace)
                    : std::nullopt;
            finish(ownPicture ? std::move(*ownPicture)
                              : windowCapture_.fromScreen(*backing, sourcesOf(*backing->displays),
                                                          shadow, colorSpace),
                   completion);
        }));
}

X11CaptureService::ImageResult X11CaptureService::readDisplay(
    const DisplayBacking& backing, const NativeRect& region,
    std::shared_ptr<const base::ColorSpace> colorSpace) {
    const auto canvas = reader_.read(region, sourcesOf({backing}), Backdrop::opaqueBlack);
    if (!canvas) {
        return canvas.error();
    }
    return canvas.value().image(base::AlphaChannel::none, std::move(colorSpace));
}

/// Each display as it is to be read; one that nothing can be read of is missing and so black.
std::vector<PixelSource> X11CaptureService::sourcesOf(const std::vector<DisplayBacking>& displays) {
    const auto& screen = connection_.screen();
    const auto layout = PixelLayout::ofVisual(connection_, screen.root_visual);
    std::vector<PixelSource> sources;
    if (!layout) {
        return sources;
    }
    const Reply<xcb_get_geometry_reply_t> root(xcb_get_geometry_reply(
        connection_.get(), xcb_get_geometry(connection_.get(), screen.root), nullptr));
    for (const DisplayBacking& backing : displays) {
        // An overlay that came after the list was made hides the live screen too.
        const auto snapshot =
            backing.snapshot ? backing.snapshot : stage_.snapshotInUse(backing.display.native);
        if (snapshot) {
            sources.push_back({snapshot->pixmap(), *layout, snapshot->frame(), {0, 0}});
        } else if (root) {
            // The screen may have become smaller since.
            const NativeRect place =
                intersection(backing.display.native, {0, 0, root->width, root->height});
            sources.push_back({screen.root, *layout, place, {place.x, place.y}});
        }
    }
    return sources;
}

void X11CaptureService::finish(ImageResult result, ImageCompletion completion) {
    // The completion comes in the next turn and has the picture delivered in the one after.
    auto hold = connection_.lateRequests().hold(endOfHold(result));
    mainQueue_.post(alive_.guard([result = std::move(result), completion = std::move(completion)] {
        if (result) {
            completion(result.value(), std::nullopt);
        } else {
            completion(std::nullopt, result.error());
        }
    }));
    mainQueue_.post([hold = std::move(hold), &queue = mainQueue_]() mutable {
        queue.post([hold = std::move(hold), &queue]() mutable {
            queue.postAfter(pasteTime, [hold = std::move(hold)] {});
        });
    });
}

}  // namespace platform::x11
