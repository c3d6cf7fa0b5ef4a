#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "base/alive.h"
#include "base/log.h"
#include "ui/video_looper.h"

namespace ui {

/// Keeps a film looping for one view, and decides what the view shows when: each picture at its
/// moment, the next one asked for meanwhile, nothing at all while nobody sees it. A film that is
/// not there or has no pictures leaves the view blank silently, one that cannot be played with one
/// line in the log. Main thread.
class VideoCoordinator {
  public:
    using Moment = std::chrono::steady_clock::time_point;
    /// What it needs of the outside; everything outlives it.
    struct Mediator {
        VideoLooperFactory& loopers;
        base::Log& log;
        std::function<Moment()> now;
        /// How large the view is; asked for each picture, not empty while somebody sees it.
        std::function<base::PixelSize()> viewSize;
        /// Has `wake` called once after a delay, instead of the call that was asked for before.
        std::function<void(std::chrono::microseconds delay)> wakeAfter;
        std::function<void()> cancelWake;
        /// The view shows this from now on; an empty image makes it blank.
        std::function<void(const base::Image& image)> show;
        /// The view has this one in it from now on, null for none any more.
        std::function<void(VideoView* view)> embed;
    };

    /// How long a picture may take: it comes in milliseconds, and a machine can be very busy.
    static constexpr std::chrono::seconds answerLimit{10};
    /// How long nobody looks before the film is closed and its memory is given back.
    static constexpr std::chrono::seconds closeDelay{10};
    /// A film that is behind by more than this goes on from where it is; by less, it catches up.
    static constexpr std::chrono::milliseconds greatestDelay{250};

    VideoCoordinator(std::string videoName, Mediator mediator);

    /// Somebody sees the view. Opens the film when it is not open.
    void play();
    /// Nobody sees it any more: nothing is asked for and nothing wakes up, until after a while the
    /// film is closed. It begins anew after that.
    void pause();
    /// The moment that was asked for.
    void wake();

  private:
    enum class State {
        /// Not opened yet, or closed again.
        closed,
        awaitingFrame,
        /// The next picture is there, too early.
        awaitingMoment,
        /// The system shows it, from the moment it is ready and for as long as the view is there.
        shownBySystem,
        /// There is nothing to show, for good.
        blank,
    };
    enum class Audience { absent, present };

    void openFilm();
    void begin(std::unique_ptr<VideoLooper> looper);
    void begin(std::unique_ptr<VideoView> playingView);
    void requestFrame();
    void receive(base::Result<VideoFrame> result);
    void schedule();
    void present();
    void stopFor(const base::Error& error);
    void close(State state);

    std::string videoName_;
    Mediator mediator_;
    State state_ = State::closed;
    Audience audience_ = Audience::absent;
    VideoFrame next_;
    /// When the film began, as far as its times are concerned; nothing after a pause.
    std::optional<Moment> beginning_;
    base::Alive alive_;
    // Empty until the film is open; one of the two keeps it looping.
    std::unique_ptr<VideoLooper> looper_;
    std::unique_ptr<VideoView> playingView_;
};

}  // namespace ui
