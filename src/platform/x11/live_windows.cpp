#include "platform/x11/live_windows.h"

#include <xcb/shape.h>

#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/x11/compositor.h"

namespace platform::x11 {

namespace {

/// How long a clearing waits for a screen that nobody repaints. A compositor needs 2 to 30 ms for
/// both frames, in software on a busy machine some 100.
constexpr std::chrono::milliseconds repaintLimit{300};

bool overlap(const NativeRect& first, const NativeRect& second) {
    return !intersection(first, second).isEmpty();
}

enum class Exposures : std::uint8_t { none = 0, sent = 1 };

xcb_void_cookie_t clearWhole(Connection& connection, xcb_window_t window, Exposures exposures) {
    return xcb_clear_area(connection.get(), static_cast<std::uint8_t>(exposures), window, 0, 0, 0,
                          0);
}

}  // namespace

LiveWindows::LiveWindows(Connection& connection, base::MainQueue& mainQueue)
    : connection_(connection), mainQueue_(mainQueue) {}

LiveWindows::~LiveWindows() {
    for (const Window& window : windows_) {
        if (window.tenure == Tenure::closed) {
            xcb_destroy_window(connection_.get(), window.id);
        }
    }
}

bool LiveWindows::isClearing(const Window& window) {
    return window.trace == Trace::clearedOnce || window.trace == Trace::clearedTwice;
}

LiveWindows::Window* LiveWindows::find(xcb_window_t window) {
    const auto found = std::find_if(windows_.begin(), windows_.end(),
                                    [&](const Window& known) { return known.id == window; });
    return found == windows_.end() ? nullptr : &*found;
}

void LiveWindows::add(xcb_window_t window, const NativeRect& frame) {
    windows_.push_back(
        Window{window, frame, Tenure::open, Trace::none, Repaint::unneeded, {}, {}, 0});
}

bool LiveWindows::holds(xcb_window_t window) const {
    return std::any_of(windows_.begin(), windows_.end(),
                       [&](const Window& known) { return known.id == window; });
}

PaintPermission LiveWindows::requestPaint(xcb_window_t window) {
    Window* const known = find(window);
    if (known == nullptr || known->tenure == Tenure::closed) {
        return PaintPermission::later;
    }
    if (isAwaited(known->frame)) {
        known->repaint = Repaint::owed;
        return PaintPermission::later;
    }
    known->trace = Trace::painted;
    return PaintPermission::granted;
}

void LiveWindows::close(xcb_window_t window) {
    Window* const known = find(window);
    if (known == nullptr) {
        return;
    }
    known->tenure = Tenure::closed;
    xcb_shape_rectangles(connection_.get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT,
                         XCB_CLIP_ORDERING_UNSORTED, window, 0, 0, 0, nullptr);
    if (known->trace == Trace::painted) {
        beginClearing(*known);
    }
    dropFinished();
    connection_.flush();
}

void LiveWindows::whenClear(const NativeRect& region, std::function<void()> clear) {
    for (Window& window : windows_) {
        if (window.trace == Trace::painted && overlap(window.frame, region)) {
            window.repaint = Repaint::owed;
            beginClearing(window);
        }
    }
    connection_.flush();
    waiters_.push_back({region, std::move(clear)});
    if (isClear(region)) {
        mainQueue_.post(alive_.guard([this] { settle(); }));
    }
}

bool LiveWindows::isClear(const NativeRect& region) const {
    return std::all_of(windows_.begin(), windows_.end(), [&](const Window& window) {
        switch (window.trace) {
            case Trace::none:
                return true;
            case Trace::clearedTwice:
                return !window.pending.intersects(region);
            case Trace::painted:
            case Trace::clearedOnce:
                break;
        }
        return !overlap(window.frame, region);
    });
}

bool LiveWindows::isAwaited(const NativeRect& frame) const {
    return std::any_of(waiters_.begin(), waiters_.end(),
                       [&](const Waiter& waiter) { return overlap(waiter.region, frame); });
}

void LiveWindows::beginClearing(Window& window) {
    if (!isCompositorRunning(connection_)) {
        // It went away while the overlay was up, and nobody blends a cleared window any more.
        xcb_unmap_window(connection_.get(), window.id);
        window.trace = Trace::none;
        return;
    }
    if (!watch_) {
        watch_ = std::make_unique<DamageWatch>(
            connection_, [this](const NativeRect& rect, std::uint32_t sequence) {
                notePainting(rect, sequence);
            });
    }
    window.trace = Trace::clearedOnce;
    window.clearNumber = nextClearNumber_++;
    clear(window);
    mainQueue_.postAfter(repaintLimit,
                         alive_.guard([this, number = window.clearNumber] { giveUp(number); }));
}

void LiveWindows::clear(Window& window) {
    const auto& screen = connection_.screen();
    window.pending = NativeRegion(
        intersection(window.frame, {0, 0, screen.width_in_pixels, screen.height_in_pixels}));
    window.clearing = clearWhole(connection_, window.id, Exposures::none);
}

void LiveWindows::notePainting(const NativeRect& rect, std::uint32_t sequence) {
    for (Window& window : windows_) {
        if (!isClearing(window) || !DamageWatch::isAfter(sequence, window.clearing)) {
            continue;
        }
        window.pending.subtract(rect);
        if (!window.pending.isEmpty()) {
            continue;
        }
        if (window.trace == Trace::clearedOnce) {
            window.trace = Trace::clearedTwice;
            clear(window);
        } else {
            window.trace = Trace::none;
        }
    }
    settle();
}

void LiveWindows::giveUp(std::uint64_t clearNumber) {
    for (Window& window : windows_) {
        if (isClearing(window) && window.clearNumber == clearNumber) {
            window.trace = Trace::none;
        }
    }
    settle();
}

void LiveWindows::dropFinished() {
    std::erase_if(windows_, [this](const Window& window) {
        const bool isOver = window.tenure == Tenure::closed && window.trace == Trace::none;
        if (isOver) {
            xcb_destroy_window(connection_.get(), window.id);
        }
        return isOver;
    });
    if (std::none_of(windows_.begin(), windows_.end(), isClearing)) {
        watch_.reset();
    }
}

void LiveWindows::settle() {
    dropFinished();
    connection_.flush();
    runWaiters();
}

void LiveWindows::runWaiters() {
    std::vector<Waiter> ready;
    const auto firstReady =
        std::stable_partition(waiters_.begin(), waiters_.end(),
                              [this](const Waiter& waiter) { return !isClear(waiter.region); });
    std::move(firstReady, waiters_.end(), std::back_inserter(ready));
    waiters_.erase(firstReady, waiters_.end());
    if (ready.empty()) {
        return;
    }
    mainQueue_.post(alive_.guard([this] { payRepaints(); }));
    // Last, since a waiter may end the stage.
    for (const Waiter& waiter : ready) {
        waiter.clear();
    }
}

void LiveWindows::payRepaints() {
    for (Window& window : windows_) {
        if (window.repaint == Repaint::owed && window.tenure == Tenure::open &&
            !isAwaited(window.frame)) {
            window.repaint = Repaint::unneeded;
            clearWhole(connection_, window.id, Exposures::sent);
        }
    }
    connection_.flush();
}

}  // namespace platform::x11
