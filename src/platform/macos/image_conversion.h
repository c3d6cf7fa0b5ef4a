#pragma once

#include <optional>

#include "base/image.h"

struct CGImage;

namespace platform::macos {

/// The picture's own pixels where they are laid out as ours, else its copy in that layout, with its
/// colour space, or converted to sRGB where a bitmap cannot have that; none when there is no memory
/// for it. Any thread.
std::optional<base::Image> imageFrom(CGImage* image);

/// A picture of the system's over the same pixels, which it keeps alive: one reference for the
/// caller to release, null for an empty picture. Any thread.
CGImage* createImage(const base::Image& image);

}  // namespace platform::macos
