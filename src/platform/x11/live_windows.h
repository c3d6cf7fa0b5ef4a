#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "base/alive.h"
#include "base/main_queue.h"
#include "platform/x11/connection.h"
#include "platform/x11/damage_watch.h"
#include "platform/x11/native_region.h"
#include "platform/x11/overlay_stage.h"

namespace platform::x11 {

/// The overlay's windows over a live screen, and the wait until they have left it. Main thread.
///
/// A window is taken off the screen by having the server clear it to transparent. It stays mapped:
/// unmapping starts the fading of the compositor. The compositor then paints the screen anew,
/// which the damage of the root window tells. That first painting may be of a frame which the
/// compositor had begun before the clearing (seen in up to 16 % of the captures, even on a still
/// screen). So when it has been seen, two corners of the area are cleared once more: the painting
/// of both comes from a frame that was begun after the first clearing, and what lies between the
/// corners is then painted too.
///
/// A capture has its own region cleared first, the rest of the window follows at its closing: a
/// compositor without a graphics processor takes ten times as long for a 4K display.
class LiveWindows {
  public:
    LiveWindows(Connection& connection, base::MainQueue& mainQueue);
    /// Destroys the closed windows.
    ~LiveWindows();
    LiveWindows(const LiveWindows&) = delete;
    LiveWindows& operator=(const LiveWindows&) = delete;

    void add(xcb_window_t window, const NativeRect& frame);
    [[nodiscard]] bool holds(xcb_window_t window) const;
    [[nodiscard]] PaintPermission requestPaint(xcb_window_t window);
    void close(xcb_window_t window);
    void whenClear(const NativeRect& region, std::function<void()> clear);

  private:
    enum class Tenure { open, closed };
    /// What may be on the screen of a window.
    enum class Trace {
        none,
        painted,
        /// The windows below have not had the time to repaint what it covered, which no event
        /// tells.
        unmapped,
        /// `area` is cleared, the compositor has not painted all of it since.
        clearedOnce,
        /// The corners of `area` are cleared once more, the compositor has not painted both since.
        clearedTwice,
        /// Nothing in `area`.
        outsideOfArea,
    };
    enum class Repaint { unneeded, owed };
    struct Window {
        xcb_window_t id = XCB_WINDOW_NONE;
        NativeRect frame{};
        Tenure tenure = Tenure::open;
        Trace trace = Trace::none;
        Repaint repaint = Repaint::unneeded;
        NativeRect area{};
        NativeRegion pending{};
        /// The clearing after which `pending` has to be painted.
        xcb_void_cookie_t clearing{};
        std::uint64_t clearNumber = 0;
    };
    struct Waiter {
        NativeRect region;
        std::function<void()> clear;
    };

    [[nodiscard]] static bool isClearing(const Window& window);
    [[nodiscard]] static bool isClear(const Window& window, const NativeRect& region);
    [[nodiscard]] Window* find(xcb_window_t window);
    [[nodiscard]] bool isClear(const NativeRect& region) const;
    [[nodiscard]] bool isAwaited(const NativeRect& frame) const;
    void beginClearing(Window& window, const NativeRect& area);
    xcb_void_cookie_t clear(const Window& window, const NativeRect& area);
    void clearCorners(Window& window);
    void notePainting(const NativeRect& rect, std::uint32_t sequence);
    void giveUp(std::uint64_t clearNumber);
    static void finishClearing(Window& window);
    void advance();
    void runWaiters();
    void payRepaints();

    Connection& connection_;
    base::MainQueue& mainQueue_;
    std::vector<Window> windows_;
    std::vector<Waiter> waiters_;
    std::unique_ptr<DamageWatch> watch_;
    std::uint64_t nextClearNumber_ = 1;
    base::Alive alive_;
};

}  // namespace platform::x11
