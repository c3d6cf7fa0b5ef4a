#pragma once

#include <memory>
#include <vector>

#include "desktop/desktop.h"

namespace demo {

/// The desktop of the film, 1280 x 720: a wallpaper, a picture viewer with a poster, and an editor,
/// which is the active window. Everything has its fixed place and size. Ends with it.
class FilmSet {
  public:
    /// Returns when both windows are shown. Needs a QGuiApplication.
    explicit FilmSet(desktop::Desktop& desktop);

    /// Where the poster's drawing and its lines of text lie on the screen, and the editor.
    static constexpr desktop::Area drawing{74, 92, 500, 262};
    static constexpr desktop::Area text{74, 360, 500, 190};
    static constexpr desktop::Area editor{640, 110, 540, 400};

  private:
    void showWallpaper();
    void openPoster();
    void openEditor();
    void waitForWindow(std::size_t count);

    desktop::Desktop& desktop_;
    std::vector<std::unique_ptr<desktop::Process>> programs_;
};

}  // namespace demo
