#pragma once

#include <cstdint>

#include "desktop/picture.h"
#include "desktop/x_client.h"

namespace desktop {

/// A picture in which every place has another colour, without structure that repeats. Two seeds
/// give two pictures that look nowhere alike.
Picture pattern(int width, int height, std::uint32_t seed);

/// The picture as a pixmap of the server, of the screen's depth. The caller frees it. On a screen
/// of 30 bits the two lower bits of each colour repeat its upper ones.
xcb_pixmap_t upload(const XClient& client, const Picture& picture);
/// The same with pixels as the screen has them.
xcb_pixmap_t uploadPixels(const XClient& client, const Picture& raw);

/// A calm picture for people to look at: a gradient from the top to the bottom.
Picture gradient(int width, int height);

/// The background of the desktop, under a compositor too.
class Wallpaper {
  public:
    /// What it shows: `pattern` to compare pixels with, `gradient` to look at, `none` where the
    /// screen shows nothing, as Xwayland's.
    enum class Motif { pattern, gradient, none };

    /// What shows it: the root window, or a window of the desktop, which desktops have whose
    /// compositor paints no root window.
    enum class Ground { root, desktopWindow };

    /// Returns when the screen shows it at its corners; the screen must be empty.
    explicit Wallpaper(const std::string& displayName, Motif motif = Motif::pattern,
                       Ground ground = Ground::root);
    [[nodiscard]] const Picture& picture() const { return picture_; }

  private:
    void showOnRoot(xcb_pixmap_t pixmap);
    void showInWindow(xcb_pixmap_t pixmap);

    XClient client_;
    Picture picture_;
};

}  // namespace desktop
