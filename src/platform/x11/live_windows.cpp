#include "platform/x11/live_windows.h"

#include <xcb/shape.h>

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

#include "platform/x11/compositor.h"
#include "platform/x11/native_region.h"

namespace platform::x11 {

namespace {

/// The windows below have so long to repaint what an unmapped one covered.
constexpr std::chrono::milliseconds unmappedPause{300};

/// When the compositor has painted nothing for so long, the clearing is repeated: mutter was seen
/// to miss one that came while it composed. A frame takes 2 to 15 ms, in software on a busy machine
/// some 60.
constexpr std::chrono::milliseconds silence{100};
/// So many silences are a screen that nobody repaints. With ten processes to a core KWin was seen
/// to be silent for more than a second, and picom with OpenGL in software for four.
constexpr int mostSilences = 50;

/// After so many frames that do not show the witness it will not be seen: the compositor changes
/// colours (fades the window in), or something lies above the overlay. mutter was seen to be three
/// frames behind.
constexpr int mostStaleFrames = 8;

bool overlap(const NativeRect& first, const NativeRect& second) {
    return !intersection(first, second).isEmpty();
}

bool holdsAll(const NativeRect& outer, const NativeRect& inner) {
    return intersection(outer, inner) == inner;
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
    return window.trace == Trace::unmapped || window.trace == Trace::cleared ||
           window.trace == Trace::witnessCleared;
}

LiveWindows::Window* LiveWindows::find(xcb_window_t window) {
    const auto found = std::find_if(windows_.begin(), windows_.end(),
                                    [&](const Window& known) { return known.id == window; });
    return found == windows_.end() ? nullptr : &*found;
}

void LiveWindows::add(xcb_window_t window, const NativeRect& frame) {
    windows_.push_back({.id = window, .frame = frame});
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
    advance();
}

void LiveWindows::whenClear(const NativeRect& region, std::function<void()> clear) {
    waiters_.push_back({region, std::move(clear)});
    advance();
    if (isClear(region)) {
        mainQueue_.post(alive_.guard([this] { runWaiters(); }));
    }
}

bool LiveWindows::isClear(const Window& window, const NativeRect& region) {
    const NativeRect common = intersection(window.frame, region);
    switch (window.trace) {
        case Trace::none:
            return true;
        case Trace::outsideOfArea:
            return holdsAll(window.area, common);
        case Trace::painted:
        case Trace::unmapped:
        case Trace::cleared:
        case Trace::witnessCleared:
            break;
    }
    return common.isEmpty();
}

bool LiveWindows::isClear(const NativeRect& region) const {
    return std::all_of(windows_.begin(), windows_.end(),
                       [&](const Window& window) { return isClear(window, region); });
}

bool LiveWindows::isAwaited(const NativeRect& frame) const {
    return std::any_of(waiters_.begin(), waiters_.end(),
                       [&](const Waiter& waiter) { return overlap(waiter.region, frame); });
}

/// Takes each window the next step: clears what a waiter needs, then what is closed, and lets go of
/// windows that are done.
void LiveWindows::advance() {
    for (Window& window : windows_) {
        if (window.trace == Trace::none || isClearing(window)) {
            continue;
        }
        NativeRect needed{};
        for (const Waiter& waiter : waiters_) {
            if (!isClear(window, waiter.region)) {
                needed = boundingBox(needed, intersection(window.frame, waiter.region));
            }
        }
        if (!needed.isEmpty()) {
            window.repaint = Repaint::owed;
            beginClearing(window, needed);
        } else if (window.tenure == Tenure::closed) {
            beginClearing(window, window.frame);
        }
    }
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
    connection_.flush();
}

void LiveWindows::beginClearing(Window& window, const NativeRect& area) {
    if (isCompositorRunning(connection_)) {
        if (!watch_) {
            watch_ = std::make_unique<DamageWatch>(
                connection_, [this](const NativeRect& rect, std::uint32_t sequence) {
                    notePainting(rect, sequence);
                });
        }
        window.trace = Trace::cleared;
        window.area = area;
        window.staleFrames = 0;
        window.silences = 0;
        window.clearing = clear(window, area);
        window.witness = std::make_unique<FrameWitness>(connection_, window.id, window.frame, area,
                                                        nextWaitNumber_);
        window.witness->paint();
        std::vector<NativeRect> parts = window.witness->pixels();
        parts.push_back(area);
        window.pending = NativeRegion(parts);
    } else {
        // It went away while the overlay was up, and nobody blends a cleared window any more.
        window.trace = Trace::unmapped;
        window.area = window.frame;
        xcb_unmap_window(connection_.get(), window.id);
    }
    awaitFrame(window);
}

void LiveWindows::awaitFrame(Window& window) {
    window.waitNumber = nextWaitNumber_++;
    mainQueue_.postAfter(window.trace == Trace::unmapped ? unmappedPause : silence,
                         alive_.guard([this, number = window.waitNumber] { noteSilence(number); }));
}

xcb_void_cookie_t LiveWindows::clear(const Window& window, const NativeRect& area) {
    return xcb_clear_area(
        connection_.get(), 0, window.id, static_cast<std::int16_t>(area.x - window.frame.x),
        static_cast<std::int16_t>(area.y - window.frame.y), static_cast<std::uint16_t>(area.width),
        static_cast<std::uint16_t>(area.height));
}

void LiveWindows::notePainting(const NativeRect& rect, std::uint32_t sequence) {
    bool isAnyDone = false;
    for (Window& window : windows_) {
        if (!isClearing(window) || window.trace == Trace::unmapped ||
            !DamageWatch::isAfter(sequence, window.clearing)) {
            continue;
        }
        window.pending.subtract(rect);
        if (window.pending.isEmpty()) {
            judgeFrame(window);
            isAnyDone = isAnyDone || !isClearing(window);
        }
    }
    connection_.flush();
    if (isAnyDone) {
        runWaiters();
    }
}

/// The compositor has painted what was pending: either that is what was waited for, or the next
/// frame is asked for.
void LiveWindows::judgeFrame(Window& window) {
    FrameWitness& witness = *window.witness;
    const bool isLast = ++window.staleFrames == mostStaleFrames;
    if (window.trace == Trace::cleared) {
        if (!isLast && witness.sight() != FrameWitness::Sight::both) {
            window.clearing = witness.paint();
        } else if (witness.place() == FrameWitness::Place::insideOfArea) {
            window.trace = Trace::witnessCleared;
            window.staleFrames = 0;
            window.clearing = witness.clear();
        } else {
            return finishClearing(window);
        }
    } else if (isLast || witness.sight() == FrameWitness::Sight::none) {
        return finishClearing(window);
    } else {
        window.clearing = witness.clear();
    }
    window.pending = NativeRegion(witness.pixels());
    awaitFrame(window);
}

void LiveWindows::finishClearing(Window& window) {
    window.trace = window.area == window.frame ? Trace::none : Trace::outsideOfArea;
}

void LiveWindows::noteSilence(std::uint64_t waitNumber) {
    for (Window& window : windows_) {
        if (!isClearing(window) || window.waitNumber != waitNumber) {
            continue;
        }
        const bool isOver = window.trace == Trace::unmapped || ++window.silences == mostSilences ||
                            !isCompositorRunning(connection_);
        if (window.trace == Trace::cleared && !isOver) {
            clear(window, window.area);
            window.witness->paint();
        } else if (window.trace != Trace::unmapped) {
            window.witness->clear();
        }
        connection_.flush();
        if (!isOver) {
            return awaitFrame(window);
        }
        finishClearing(window);
        return runWaiters();
    }
}

void LiveWindows::runWaiters() {
    const auto firstReady =
        std::stable_partition(waiters_.begin(), waiters_.end(),
                              [this](const Waiter& waiter) { return !isClear(waiter.region); });
    const std::vector<Waiter> ready(std::make_move_iterator(firstReady),
                                    std::make_move_iterator(waiters_.end()));
    waiters_.erase(firstReady, waiters_.end());
    // A waiter may end all of this; what is left to do comes after it has read the screen.
    mainQueue_.post(alive_.guard([this] {
        advance();
        payRepaints();
    }));
    for (const Waiter& waiter : ready) {
        waiter.clear();
    }
}

void LiveWindows::payRepaints() {
    for (Window& window : windows_) {
        if (window.repaint == Repaint::owed && window.tenure == Tenure::open &&
            !isAwaited(window.frame)) {
            window.repaint = Repaint::unneeded;
            xcb_clear_area(connection_.get(), 1, window.id, 0, 0, 0, 0);
        }
    }
    connection_.flush();
}

}  // namespace platform::x11
