#include "ui/video_coordinator.h"

#include <utility>
#include <variant>

namespace ui {

using std::chrono::microseconds;

VideoCoordinator::VideoCoordinator(std::string videoName, Mediator mediator)
    : videoName_(std::move(videoName)), mediator_(std::move(mediator)) {}

void VideoCoordinator::play() {
    if (audience_ == Audience::present) {
        return;
    }
    audience_ = Audience::present;
    switch (state_) {
        case State::closed:
            openFilm();
            return;
        case State::awaitingFrame:
            mediator_.wakeAfter(answerLimit);
            return;
        case State::awaitingMoment:
            schedule();
            return;
        case State::shownBySystem:
        case State::blank:
            return;
    }
}

void VideoCoordinator::pause() {
    if (audience_ == Audience::absent) {
        return;
    }
    audience_ = Audience::absent;
    beginning_.reset();
    switch (state_) {
        case State::awaitingFrame:
        case State::awaitingMoment:
            mediator_.wakeAfter(closeDelay);
            return;
        case State::closed:
        case State::shownBySystem:
        case State::blank:
            return;
    }
}

void VideoCoordinator::wake() {
    switch (state_) {
        case State::awaitingFrame:
            if (audience_ == Audience::absent) {
                close(State::closed);
            } else {
                stopFor({base::ErrorKind::failed, "The video decoder did not answer in time."});
            }
            return;
        case State::awaitingMoment:
            if (audience_ == Audience::absent) {
                close(State::closed);
            } else {
                present();
            }
            return;
        case State::closed:
        case State::shownBySystem:
        case State::blank:
            return;
    }
}

void VideoCoordinator::openFilm() {
    auto film = mediator_.loopers.open(videoName_);
    if (!film) {
        stopFor(film.error());
        return;
    }
    std::visit([this](auto& opened) { begin(std::move(opened)); }, film.value());
}

void VideoCoordinator::begin(std::unique_ptr<VideoLooper> looper) {
    looper_ = std::move(looper);
    requestFrame();
}

void VideoCoordinator::begin(std::unique_ptr<VideoView> playingView) {
    playingView_ = std::move(playingView);
    state_ = State::shownBySystem;
    mediator_.embed(playingView_.get());
    playingView_->play(alive_.guard([this](const base::Status& result) {
        if (!result) {
            stopFor(result.error());
        }
    }));
}

void VideoCoordinator::requestFrame() {
    state_ = State::awaitingFrame;
    mediator_.wakeAfter(answerLimit);
    looper_->nextFrame(mediator_.viewSize(), alive_.guard([this](base::Result<VideoFrame> result) {
        receive(std::move(result));
    }));
}

void VideoCoordinator::receive(base::Result<VideoFrame> result) {
    if (!result) {
        stopFor(result.error());
        return;
    }
    next_ = std::move(result.value());
    state_ = State::awaitingMoment;
    if (audience_ == Audience::present) {
        schedule();
    }
}

void VideoCoordinator::schedule() {
    const Moment now = mediator_.now();
    if (!beginning_ || now - (*beginning_ + next_.time) > greatestDelay) {
        beginning_ = now - next_.time;
    }
    const auto delay = std::chrono::ceil<microseconds>(*beginning_ + next_.time - now);
    if (delay > microseconds(0)) {
        mediator_.wakeAfter(delay);
    } else {
        present();
    }
}

void VideoCoordinator::present() {
    mediator_.show(std::exchange(next_, {}).image);
    requestFrame();
}

void VideoCoordinator::stopFor(const base::Error& error) {
    close(State::blank);
    if (error.kind != base::ErrorKind::notFound) {
        mediator_.log.line("Failed to load video: " + error.sentence);
    }
}

void VideoCoordinator::close(State state) {
    state_ = state;
    beginning_.reset();
    mediator_.cancelWake();
    mediator_.show({});
    next_ = {};
    looper_.reset();
    if (playingView_) {
        mediator_.embed(nullptr);
        playingView_.reset();
    }
}

}  // namespace ui
