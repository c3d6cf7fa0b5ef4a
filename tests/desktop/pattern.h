#pragma once

#include <cstdint>

#include "desktop/picture.h"
#include "desktop/x_client.h"

namespace desktop {

/// A picture in which every place has another colour, without structure that repeats. Two seeds
/// give two pictures that look nowhere alike.
Picture pattern(int width, int height, std::uint32_t seed);

/// The picture as a pixmap of the server, of the screen's depth. The caller frees it.
xcb_pixmap_t upload(const XClient& client, const Picture& picture);

/// The background of the desktop: the root window shows a pattern, under a compositor too.
class Wallpaper {
  public:
    /// Returns when the screen shows it at its corners; the screen must be empty.
    explicit Wallpaper(const std::string& displayName, std::uint32_t seed = 7);
    [[nodiscard]] const Picture& picture() const { return picture_; }

  private:
    XClient client_;
    Picture picture_;
};

}  // namespace desktop
