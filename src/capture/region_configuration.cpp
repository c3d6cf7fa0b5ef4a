#include "capture/region_configuration.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "base/log.h"

namespace capture {

namespace {

std::int64_t truncatedPixels(double pixels) {
    constexpr double limit = 9223372036854775808.0;  // 2^63
    if (!(pixels > -limit && pixels < limit)) {
        base::fatalError("The size of the selection in pixels is out of range.");
    }
    // A length of whole pixels that was divided by the scale comes back a hair beside them.
    constexpr double hair = 1e-6;
    const double nearest = std::round(pixels);
    return static_cast<std::int64_t>(std::abs(pixels - nearest) <= hair ? nearest : pixels);
}

}  // namespace

std::optional<ShareableDisplay> displayForSelection(const std::vector<ShareableDisplay>& displays,
                                                    const base::Rect& screenRect) {
    const auto found = std::find_if(displays.begin(), displays.end(), [&](const auto& display) {
        return intersection(screenRect, display.frame).size.width > 0;
    });
    return found == displays.end() ? std::nullopt : std::optional(*found);
}

base::Rect sourceRect(const base::Rect& screenRect, const base::Rect& frame) {
    return {{screenRect.minX() - frame.origin.x,
             frame.size.height - (screenRect.origin.y - frame.origin.y) - screenRect.size.height},
            screenRect.size};
}

std::vector<ShareableWindow> windowsToExclude(
    const std::vector<ShareableWindow>& windows,
    const std::optional<std::string>& mainBundleIdentifier) {
    std::vector<ShareableWindow> excluded;
    std::copy_if(windows.begin(), windows.end(), std::back_inserter(excluded),
                 [&](const ShareableWindow& window) {
                     const auto owner = window.owningApplication
                                            ? window.owningApplication->bundleIdentifier
                                            : std::nullopt;
                     return owner == mainBundleIdentifier && window.windowLayer != 0;
                 });
    return excluded;
}

StreamConfiguration regionConfiguration(const base::Rect& source, double scaleFactor,
                                        const std::optional<std::string>& colorSpaceName) {
    StreamConfiguration configuration;
    configuration.sourceRect = source;
    configuration.width = truncatedPixels(source.size.width * scaleFactor);
    configuration.height = truncatedPixels(source.size.height * scaleFactor);
    configuration.cursor = CursorVisibility::hidden;
    configuration.scaling = Scaling::none;
    configuration.pixelFormat = PixelFormat::bgra;
    configuration.colorSpaceName = colorSpaceName;
    return configuration;
}

}  // namespace capture
