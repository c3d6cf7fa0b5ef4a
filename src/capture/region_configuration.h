#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/geometry.h"
#include "capture/capture_service.h"

namespace capture {

/// The first display whose frame shares a positive width with `screenRect` (both in screen space);
/// none when there is no such display.
std::optional<ShareableDisplay> displayForSelection(const std::vector<ShareableDisplay>& displays,
                                                    const base::Rect& screenRect);

/// `screenRect` inside the display `frame`, its vertical axis flipped: points, y down from the top
/// of the display. Not clipped.
base::Rect sourceRect(const base::Rect& screenRect, const base::Rect& frame);

/// The windows that a picture leaves out: this program's own above the ordinary layer. Identifiers
/// are compared as optionals: a window without an owner belongs to a program without an identifier.
std::vector<ShareableWindow> windowsToExclude(
    const std::vector<ShareableWindow>& windows,
    const std::optional<std::string>& mainBundleIdentifier);

/// How a region is captured: the size of `source` times `scaleFactor` in pixels, truncated toward
/// zero; a product closer to a whole number than a millionth is that number. One that is no 64-bit
/// integer is a fatal error.
StreamConfiguration regionConfiguration(const base::Rect& source, double scaleFactor,
                                        const std::optional<std::string>& colorSpaceName);

}  // namespace capture
