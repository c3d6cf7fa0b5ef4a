#pragma once

#include <memory>

#include "capture/sound_player.h"

namespace platform::macos {

/// The system's named sounds, and the files behind them.
class NamedSoundPlayer final : public capture::SoundPlayer {
  public:
    // Main thread, as every method here.
    NamedSoundPlayer();
    ~NamedSoundPlayer() override;
    NamedSoundPlayer(const NamedSoundPlayer&) = delete;
    NamedSoundPlayer& operator=(const NamedSoundPlayer&) = delete;

    /// The sound has no path: the system knows it by its name.
    [[nodiscard]] std::optional<capture::Sound> soundNamed(const std::string& name) override;
    [[nodiscard]] std::optional<capture::Sound> soundInFallbackFile(
        const std::string& name) override;
    void play(const capture::Sound& sound) override;

  private:
    struct Playing;
    /// The sound that was played last, which ends when nobody holds it.
    std::unique_ptr<Playing> playing_;
};

}  // namespace platform::macos
