#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "base/alive.h"
#include "base/main_queue.h"
#include "platform/x11/connection.h"
#include "platform/x11/damage_watch.h"
#include "platform/x11/frame_witness.h"
#include "platform/x11/native_region.h"
#include "platform/x11/overlay_stage.h"

namespace platform::x11 {

/// The overlay's windows over a live screen, and the wait until they have left it. Main thread.
///
/// A window is taken off the screen by having the server clear it to transparent. It stays mapped:
/// unmapping starts the fading of the compositor. The compositor then paints the screen anew,
/// which the damage of the root window tells. Its first paintings may be of frames which it had
/// composed before the clearing, even on a still screen; so two pixels beside the area are painted
/// after the clearing, and the area is clear when they are seen on the screen (see FrameWitness).
/// Where they are inside of the area, for want of room, they have to leave the screen again.
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
        /// `area` is cleared and the witness painted, which the screen has not shown since.
        cleared,
        /// The witness was in `area`, and is cleared; the screen may still show it.
        witnessCleared,
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
        std::unique_ptr<FrameWitness> witness{};
        /// What the next frame has to paint.
        NativeRegion pending{};
        /// The clearing after which `pending` has to be painted.
        xcb_void_cookie_t clearing{};
        /// How often that was painted and did not show what was waited for.
        int staleFrames = 0;
        /// How often nothing was painted for some time.
        int silences = 0;
        /// Of the wait for the next frame.
        std::uint64_t waitNumber = 0;
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
    void awaitFrame(Window& window);
    void notePainting(const NativeRect& rect, std::uint32_t sequence);
    void judgeFrame(Window& window);
    void noteSilence(std::uint64_t waitNumber);
    static void finishClearing(Window& window);
    void advance();
    void runWaiters();
    void payRepaints();

    Connection& connection_;
    base::MainQueue& mainQueue_;
    std::vector<Window> windows_;
    std::vector<Waiter> waiters_;
    std::unique_ptr<DamageWatch> watch_;
    std::uint64_t nextWaitNumber_ = 1;
    base::Alive alive_;
};

}  // namespace platform::x11
