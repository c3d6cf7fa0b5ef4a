#include "platform/video/frame_timeline.h"

#include <algorithm>

namespace platform::video {

using std::chrono::microseconds;

namespace {

/// 285 years: far beyond any film, and no sum of two overflows.
constexpr microseconds largestStamp{std::int64_t{1} << 53U};

std::optional<microseconds> credible(const std::optional<microseconds>& stamp) {
    return stamp && *stamp <= largestStamp && *stamp >= -largestStamp ? stamp : std::nullopt;
}

}  // namespace

microseconds FrameTimeline::place(const FrameTiming& timing) {
    const auto stamp = credible(timing.stamp);
    microseconds time = next_;
    if (place_ == Place::beginning) {
        firstStamp_ = stamp;
        place_ = Place::inside;
    } else if (stamp && firstStamp_) {
        const microseconds stamped = start_ + (*stamp - *firstStamp_);
        if (stamped > last_ && stamped - last_ <= longestDuration) {
            time = std::max(stamped, last_ + shortestDuration);
        }
    }
    const microseconds duration =
        timing.duration && timing.duration->count() > 0 ? *timing.duration : defaultDuration;
    last_ = time;
    next_ = time + std::clamp(duration, shortestDuration, longestDuration);
    return time;
}

void FrameTimeline::beginRound() {
    start_ = next_;
    place_ = Place::beginning;
}

}  // namespace platform::video
