#pragma once

#include <memory>
#include <string>

#include "base/alive.h"
#include "ui/video_looper.h"

namespace platform::macos {

/// A film in a player view without controls: the system plays it by itself, muted and endlessly,
/// and covers the whole frame with it.
class LoopingPlayerView final : public ui::VideoView {
  public:
    // Main thread, as every method here and the call of the completion.
    /// `path` is that of a film.
    explicit LoopingPlayerView(const std::string& path);
    ~LoopingPlayerView() override;
    LoopingPlayerView(const LoopingPlayerView&) = delete;
    LoopingPlayerView& operator=(const LoopingPlayerView&) = delete;

    [[nodiscard]] std::uintptr_t handle() const override;
    void setCornerRadius(double radius) override;
    void play(Completion completion) override;

  private:
    struct Coordinator;

    std::unique_ptr<Coordinator> coordinator_;
    base::Alive alive_;
};

/// The films among the resources of the main bundle.
class BundleFilms final : public ui::VideoLooperFactory {
  public:
    // Main thread.
    base::Result<ui::Film> open(const std::string& videoName) override;
};

}  // namespace platform::macos
