#pragma once

#include "capture/sound_player.h"

namespace platform::macos {

/// The system's named sounds, and the files behind them.
class NamedSoundPlayer final : public capture::SoundPlayer {
  public:
    // Main thread, as every method here.
    [[nodiscard]] std::optional<capture::Sound> soundNamed(const std::string& name) override;
    [[nodiscard]] std::optional<capture::Sound> soundInFallbackFile(
        const std::string& name) override;
    void play(const capture::Sound& sound) override;

  private:
    /// The sound that was played last, which ends when nobody holds it.
    capture::Sound playing_;
};

}  // namespace platform::macos
