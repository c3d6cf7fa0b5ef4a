#pragma once

#include <array>
#include <string_view>

#include "base/image.h"

namespace bench {

/// The kinds of screen that a PNG writer meets.
enum class PictureKind { desktop, photograph, text, flat, noise };

inline constexpr std::array allPictureKinds{PictureKind::desktop, PictureKind::photograph,
                                            PictureKind::text, PictureKind::flat,
                                            PictureKind::noise};

std::string_view nameOf(PictureKind kind);

/// An opaque picture of `width` by `height` pixels, the same one at each call on one machine (text
/// depends on its fonts). Needs a `QGuiApplication`.
base::Image drawPicture(PictureKind kind, int width, int height);

}  // namespace bench
