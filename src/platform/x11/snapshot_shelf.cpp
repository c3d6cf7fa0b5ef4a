#include "platform/x11/snapshot_shelf.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace platform::x11 {

namespace {

/// The time that the windows below get to repaint what the overlay covered.
constexpr std::chrono::milliseconds repaintLimit{250};

}  // namespace

SnapshotShelf::SnapshotShelf(Connection& connection, base::MainQueue& mainQueue)
    : connection_(connection), mainQueue_(mainQueue) {}

void SnapshotShelf::add(xcb_window_t window, std::shared_ptr<const Snapshot> snapshot) {
    shown_.push_back({window, std::move(snapshot)});
}

bool SnapshotShelf::holds(xcb_window_t window) const {
    return std::any_of(shown_.begin(), shown_.end(),
                       [&](const Shown& shown) { return shown.window == window; });
}

std::vector<NativeRect> SnapshotShelf::shownFrames() const {
    std::vector<NativeRect> frames;
    for (const Shown& shown : shown_) {
        frames.push_back(shown.snapshot->frame());
    }
    return frames;
}

void SnapshotShelf::close(xcb_window_t window) {
    const auto found = std::find_if(shown_.begin(), shown_.end(),
                                    [&](const Shown& shown) { return shown.window == window; });
    if (found == shown_.end()) {
        return;
    }
    const std::uint64_t number = nextNumber_++;
    kept_.push_back({number, std::move(found->snapshot)});
    shown_.erase(found);
    // Only then the windows below begin to repaint.
    auto repaintBegins = alive_.guard([this, number] { forgetLater(number); });
    connection_.lateRequests().add(
        [&connection = connection_, window, repaintBegins = std::move(repaintBegins)]() mutable {
            xcb_destroy_window(connection.get(), window);
            connection.flush();
            repaintBegins();
        });
}

void SnapshotShelf::forgetLater(std::uint64_t number) {
    mainQueue_.postAfter(repaintLimit, alive_.guard([this, number] {
        std::erase_if(kept_, [number](const Kept& kept) { return kept.number == number; });
        connection_.flush();
    }));
}

std::shared_ptr<const Snapshot> SnapshotShelf::find(const NativeRect& frame) const {
    const auto isOfFrame = [&](const auto& entry) { return entry.snapshot->frame() == frame; };
    // The newest: an older one may have been kept from an overlay before it.
    const auto shown = std::find_if(shown_.rbegin(), shown_.rend(), isOfFrame);
    if (shown != shown_.rend()) {
        return shown->snapshot;
    }
    const auto kept = std::find_if(kept_.rbegin(), kept_.rend(), isOfFrame);
    return kept != kept_.rend() ? kept->snapshot : nullptr;
}

}  // namespace platform::x11
