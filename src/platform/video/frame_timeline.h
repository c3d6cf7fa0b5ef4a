#pragma once

#include <chrono>
#include <optional>

namespace platform::video {

/// What a file says of one picture's time; nothing where it says nothing.
struct FrameTiming {
    std::optional<std::chrono::microseconds> stamp{};
    std::optional<std::chrono::microseconds> duration{};
};

/// Lays the pictures of a film, round after round, out on one line of time that begins at 0,
/// whatever their stamps are: each picture comes after the one before it, at its stamp's distance
/// from the first one of its round, and the last one of a round lasts its own duration. A stamp
/// that is missing, goes back or is absurdly far ahead counts for nothing, and that picture comes
/// when the one before it has lasted its time.
class FrameTimeline {
  public:
    /// A film cannot ask for more pictures a second than any display shows.
    static constexpr std::chrono::microseconds shortestDuration{1'000'000 / 120};
    /// For a picture whose duration nobody knows.
    static constexpr std::chrono::microseconds defaultDuration{40'000};
    /// Longer than any still.
    static constexpr std::chrono::microseconds longestDuration{std::chrono::hours(1)};

    /// When the next picture of the round is due.
    std::chrono::microseconds place(const FrameTiming& timing);
    /// The film begins anew.
    void beginRound();

  private:
    /// Where the round begins.
    std::chrono::microseconds start_{0};
    /// When the picture after the last one is due if nothing else is known.
    std::chrono::microseconds next_{0};
    std::chrono::microseconds last_{0};
    /// The stamp of the round's first picture.
    std::optional<std::chrono::microseconds> firstStamp_;
    enum class Place { beginning, inside };
    Place place_ = Place::beginning;
};

}  // namespace platform::video
