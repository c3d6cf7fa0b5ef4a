#pragma once

#include <compare>
#include <string>
#include <vector>

#include "desktop/input_driver.h"
#include "desktop/picture.h"
#include "desktop/x_client.h"

namespace desktop {

/// A rectangle on the screen, native pixels from the top left.
struct Area {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    friend auto operator<=>(const Area&, const Area&) = default;
};

/// How a test window presents itself.
struct TestWindowOptions {
    int x = 0;
    int y = 0;
    int width = 400;
    int height = 300;
    std::string title = "Test window";
    /// Override-redirect: no window manager touches it; it is where and as large as it says.
    enum class Management { managed, unmanaged } management = Management::managed;
    /// Without decoration the frame is exactly the window.
    enum class Decoration { full, none } decoration = Decoration::full;
    /// The pattern differs with it, so that two windows never look alike.
    std::uint32_t seed = 1;
    /// The values of _NET_WM_WINDOW_TYPE and _NET_WM_STATE that it is mapped with.
    std::vector<std::string> types{};
    std::vector<std::string> states{};
};

/// An ordinary window of another program: shows a pattern in which every place is different, and
/// keeps a record of the keys that reach it. It belongs to this process (its _NET_WM_PID).
class TestWindow {
  public:
    /// Returns when the window is on the screen, painted, at its final place.
    TestWindow(const std::string& displayName, const TestWindowOptions& options);

    [[nodiscard]] xcb_window_t id() const { return window_; }
    /// The pattern: what the window shows.
    [[nodiscard]] const Picture& picture() const { return picture_; }
    /// Where the window's own area lies on the screen now, decoration not counted.
    [[nodiscard]] Place place() const;
    /// The whole window with its visible decoration, native pixels from the top left of the screen.
    [[nodiscard]] Area frame() const;
    /// Gives the window the input focus and waits until it has it.
    void focus();
    /// The codes of the keys pressed in this window since the last call; call after the presses
    /// have been carried out (it synchronises with the server first).
    std::vector<std::uint8_t> takeKeys();
    void unmap();

  private:
    void create(const TestWindowOptions& options);
    void setAtoms(const std::string& property, const std::vector<std::string>& names);
    void paint();
    [[nodiscard]] bool isOnScreen(const Area& area) const;
    void handleEvents();

    XClient client_;
    xcb_window_t window_;
    Picture picture_;
    bool isMapped_ = false;
    std::vector<std::uint8_t> keys_;
};

}  // namespace desktop
