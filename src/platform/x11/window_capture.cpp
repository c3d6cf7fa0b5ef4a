#include "platform/x11/window_capture.h"

#include <algorithm>
#include <utility>

#include "platform/x11/native_region.h"
#include "platform/x11/soft_shadow.h"
#include "platform/x11/window_pixmap.h"

namespace platform::x11 {

namespace {

/// Native pixels for each point where the middle of the window is.
double scaleAt(const WindowBacking& backing) {
    const NativeRect& frame = backing.window.frame;
    const NativePoint middle{frame.x + frame.width / 2, frame.y + frame.height / 2};
    const auto& displays = *backing.displays;
    const auto found = std::find_if(
        displays.begin(), displays.end(),
        [&](const DisplayBacking& candidate) { return candidate.display.native.contains(middle); });
    if (found != displays.end()) {
        return found->display.scale;
    }
    return displays.empty() ? 1.0 : displays.front().display.scale;
}

base::AlphaChannel alphaOf(Backdrop backdrop) {
    return backdrop == Backdrop::transparent ? base::AlphaChannel::premultiplied
                                             : base::AlphaChannel::none;
}

}  // namespace

WindowCapture::WindowCapture(Connection& connection, ScreenReader& reader)
    : connection_(connection), reader_(reader) {}

std::optional<base::Result<base::Image>> WindowCapture::fromPixmap(
    const WindowBacking& backing, capture::WindowShadow shadow,
    const std::shared_ptr<const base::ColorSpace>& colorSpace) {
    const auto pixmap = WindowPixmap::of(connection_, backing.window.topLevel);
    if (!pixmap) {
        return pixmap.error();
    }
    if (!pixmap.value()) {
        return std::nullopt;
    }
    const auto layout = PixelLayout::ofVisual(connection_, pixmap.value()->visual());
    if (!layout) {
        return base::Error{base::ErrorKind::unavailable,
                           "The window shows palette colours, which cannot be captured."};
    }
    const NativeRect whole{0, 0, pixmap.value()->width(), pixmap.value()->height()};
    const NativeRect visible = visiblePart(whole, backing.window.extents);
    const bool hasOwnShadow = visible != whole && layout->hasAlpha();
    const bool isShadowed = shadow == capture::WindowShadow::included;
    const NativeRect area = isShadowed && hasOwnShadow ? whole : visible;
    const std::vector<PixelSource> sources{{pixmap.value()->id(), *layout, area, {area.x, area.y}}};
    if (isShadowed && !hasOwnShadow) {
        return withSoftShadow(area, sources, scaleAt(backing), colorSpace);
    }
    const Backdrop backdrop = layout->hasAlpha() ? Backdrop::transparent : Backdrop::opaqueBlack;
    const auto canvas = reader_.read(area, sources, backdrop);
    if (!canvas) {
        return canvas.error();
    }
    return canvas.value().image(alphaOf(backdrop), colorSpace);
}

base::Result<base::Image> WindowCapture::fromScreen(
    const WindowBacking& backing, const std::vector<PixelSource>& sources,
    capture::WindowShadow shadow, const std::shared_ptr<const base::ColorSpace>& colorSpace) {
    const NativeRect& frame = backing.window.frame;
    if (shadow == capture::WindowShadow::included) {
        std::vector<PixelSource> parts;
        for (PixelSource source : sources) {
            const NativeRect part = intersection(source.place, frame);
            source.origin.x += part.x - source.place.x;
            source.origin.y += part.y - source.place.y;
            source.place = part;
            parts.push_back(source);
        }
        return withSoftShadow(frame, parts, scaleAt(backing), colorSpace);
    }
    const auto canvas = reader_.read(frame, sources, Backdrop::opaqueBlack);
    if (!canvas) {
        return canvas.error();
    }
    return canvas.value().image(base::AlphaChannel::none, colorSpace);
}

base::Result<base::Image> WindowCapture::withSoftShadow(
    const NativeRect& window, const std::vector<PixelSource>& sources, double scale,
    const std::shared_ptr<const base::ColorSpace>& colorSpace) {
    const SoftShadow shadow(scale);
    const NativeRect area = shadow.frameAround(window);
    const auto canvas = reader_.read(area, sources, Backdrop::transparent);
    if (!canvas) {
        return canvas.error();
    }
    shadow.draw(canvas.value(),
                {window.x - area.x, window.y - area.y, window.width, window.height});
    return canvas.value().image(base::AlphaChannel::premultiplied, colorSpace);
}

}  // namespace platform::x11
