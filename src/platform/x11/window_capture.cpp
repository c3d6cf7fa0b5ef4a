#include "platform/x11/window_capture.h"

#include <algorithm>
#include <utility>

#include "platform/x11/frame_corners.h"
#include "platform/x11/native_region.h"
#include "platform/x11/round_decoration.h"
#include "platform/x11/soft_shadow.h"

namespace platform::x11 {

namespace {

/// Native pixels for each point where the middle of the window is.
double scaleAt(const WindowBacking& backing) {
    const NativeRect& frame = backing.window.frame.visible;
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

/// The part of the source that lies in `area`.
PixelSource cut(PixelSource source, const NativeRect& area) {
    const NativeRect part = intersection(source.place, area);
    source.origin.x += part.x - source.place.x;
    source.origin.y += part.y - source.place.y;
    source.place = part;
    return source;
}

/// Whether every pixel of `area` comes from a source and is opaque there.
bool isOpaque(const std::vector<PixelSource>& sources, const NativeRect& area) {
    NativeRegion rest(area);
    for (const PixelSource& source : sources) {
        if (source.layout.hasAlpha()) {
            return false;
        }
        rest.subtract(source.place);
    }
    return rest.isEmpty();
}

void makeOpaque(const Canvas& canvas) {
    for (int y = 0; y < canvas.height; ++y) {
        std::uint8_t* alpha = canvas.row(y) + 3;
        for (int x = 0; x < canvas.width; ++x, alpha += 4) {
            *alpha = 255;
        }
    }
}

}  // namespace

WindowCapture::WindowCapture(Connection& connection, ScreenReader& reader)
    : connection_(connection), reader_(reader) {}

std::optional<base::Result<base::Image>> WindowCapture::fromPixmap(
    const WindowBacking& backing, DecorationSource decoration, capture::WindowShadow shadow,
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
    const WindowFrame& frame = backing.window.frame;
    const bool isBlended = !backing.keptWindows;
    Material material;
    material.visible = visiblePart(whole, frame.margins);
    material.withOwnShadow = frame.shadow == ShadowSource::window && isBlended && layout->hasAlpha()
                                 ? whole
                                 : material.visible;
    material.sources =
        sourcesFrom(*pixmap.value(), isBlended ? *layout : layout->withoutAlpha(), backing);
    material.shape = WindowShape::of(connection_, backing.window.topLevel, {0, 0});
    material.scale = scaleAt(backing);
    if (frame.hasDecoration() && isBlended) {
        switch (decoration) {
            case DecorationSource::pixmap:
                material.corners = layout->hasAlpha() ? Material::Corners::painted
                                                      : Material::Corners::perhapsUnpainted;
                break;
            case DecorationSource::screen:
                addDecorationFromScreen(material, backing);
                break;
        }
    }
    return picture(std::move(material), shadow, colorSpace);
}

void WindowCapture::addDecorationFromScreen(Material& material,
                                            const WindowBacking& backing) const {
    const WindowFrame& frame = backing.window.frame;
    const NativeRect client = visiblePart(material.visible, frame.decoration);
    NativeRegion decoration(frame.visible);
    decoration.subtract(visiblePart(frame.visible, frame.decoration));
    NativeRegion offScreen(frame.visible);
    for (const DisplayBacking& display : *backing.displays) {
        offScreen.subtract(display.display.native);
    }
    const auto isHidden = [&](const NativeRect& part) {
        const auto overlaps = [&](const NativeRect& other) {
            return !intersection(part, other).isEmpty();
        };
        return offScreen.intersects(part) ||
               std::any_of(backing.inFront.begin(), backing.inFront.end(), overlaps);
    };
    const auto screenLayout = PixelLayout::ofVisual(connection_, connection_.screen().root_visual);
    const bool isResized = frame.visible.width != material.visible.width ||
                           frame.visible.height != material.visible.height;
    for (PixelSource& source : material.sources) {
        source = cut(source, client);
    }
    if (!screenLayout || isResized ||
        std::any_of(decoration.parts().begin(), decoration.parts().end(), isHidden)) {
        material.visible = client;
        material.withOwnShadow = client;
        return;
    }
    for (const NativeRect& part : decoration.parts()) {
        const NativeRect place{part.x - frame.visible.x + material.visible.x,
                               part.y - frame.visible.y + material.visible.y, part.width,
                               part.height};
        material.sources.push_back({connection_.root(), *screenLayout, place, {part.x, part.y}});
    }
    material.corners = Material::Corners::perhapsOpen;
    material.barHeight = frame.decoration.top;
}

std::vector<PixelSource> WindowCapture::sourcesFrom(const WindowPixmap& pixmap,
                                                    const PixelLayout& layout,
                                                    const WindowBacking& backing) const {
    const NativeRect whole{0, 0, pixmap.width(), pixmap.height()};
    const NativeRect topLevel = backing.window.frame.topLevel();
    const KeptWindow* const kept =
        backing.keptWindows ? backing.keptWindows->find(backing.window.topLevel) : nullptr;
    const auto screenLayout = PixelLayout::ofVisual(connection_, connection_.screen().root_visual);
    std::vector<PixelSource> sources;
    NativeRegion rest(whole);
    if (kept != nullptr && screenLayout && kept->frame.topLevel() == topLevel &&
        topLevel.width == whole.width && topLevel.height == whole.height) {
        // A program that does not answer has painted the screen, but not the pixmap.
        for (const DisplayBacking& display : *backing.displays) {
            for (const NativeRect& part : kept->visibleParts) {
                const NativeRect shown = intersection(part, display.display.native);
                if (!display.snapshot || shown.isEmpty()) {
                    continue;
                }
                const NativeRect place{shown.x - topLevel.x, shown.y - topLevel.y, shown.width,
                                       shown.height};
                const NativeRect screen = display.snapshot->frame();
                sources.push_back({display.snapshot->pixmap(),
                                   *screenLayout,
                                   place,
                                   {shown.x - screen.x, shown.y - screen.y}});
                rest.subtract(place);
            }
        }
    }
    for (const NativeRect& part : rest.parts()) {
        sources.push_back({pixmap.id(), layout, part, {part.x, part.y}});
    }
    return sources;
}

base::Result<base::Image> WindowCapture::fromScreen(
    const WindowBacking& backing, std::vector<PixelSource> sources, capture::WindowShadow shadow,
    const std::shared_ptr<const base::ColorSpace>& colorSpace) {
    // The snapshots show it where it was.
    const KeptWindow* const kept =
        backing.keptWindows ? backing.keptWindows->find(backing.window.topLevel) : nullptr;
    const WindowFrame& frame = kept != nullptr ? kept->frame : backing.window.frame;
    const NativeRect topLevel = frame.topLevel();
    Material material;
    material.visible = frame.visible;
    material.withOwnShadow = frame.visible;
    material.sources = std::move(sources);
    material.shape =
        WindowShape::of(connection_, backing.window.topLevel, {topLevel.x, topLevel.y});
    material.scale = scaleAt(backing);
    return picture(std::move(material), shadow, colorSpace);
}

base::Result<base::Image> WindowCapture::picture(
    Material material, capture::WindowShadow shadow,
    const std::shared_ptr<const base::ColorSpace>& colorSpace) {
    const bool isShadowed = shadow == capture::WindowShadow::included;
    const NativeRect window = isShadowed ? material.withOwnShadow : material.visible;
    const bool lacksShadow = isShadowed && window == material.visible;
    const SoftShadow softShadow(material.scale);
    const NativeRect area = lacksShadow ? softShadow.frameAround(window) : window;
    const NativeRect inCanvas{window.x - area.x, window.y - area.y, window.width, window.height};
    for (PixelSource& source : material.sources) {
        source = cut(source, window);
    }
    const Backdrop backdrop = isOpaque(material.sources, area) && material.shape.covers(area)
                                  ? Backdrop::opaqueBlack
                                  : Backdrop::transparent;
    const auto canvas = reader_.read(area, material.sources, backdrop);
    if (!canvas) {
        return canvas.error();
    }
    const bool isRound = material.corners == Material::Corners::perhapsUnpainted &&
                         hasUnpaintedCorners(canvas.value(), inCanvas);
    const auto radius = material.corners == Material::Corners::perhapsOpen
                            ? decorationRadius(canvas.value(), inCanvas, material.barHeight)
                            : std::nullopt;
    if (backdrop == Backdrop::opaqueBlack && !isRound && !radius) {
        return canvas.value().image(base::AlphaChannel::none, colorSpace);
    }
    if (backdrop == Backdrop::opaqueBlack) {
        makeOpaque(canvas.value());
    }
    material.shape.clip(canvas.value(), area);
    if (isRound) {
        clearUnpaintedCorners(canvas.value(), inCanvas);
    }
    if (radius) {
        cutRoundDecoration(canvas.value(), inCanvas, *radius);
    }
    if (lacksShadow) {
        softShadow.draw(canvas.value(), inCanvas);
    }
    return canvas.value().image(base::AlphaChannel::premultiplied, colorSpace);
}

}  // namespace platform::x11
