#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <string>

#include "capture/sound_player.h"
#include "platform/freedesktop/xdg_directories.h"

namespace platform::freedesktop {

/// Plays the sounds of the desktop's theme. Main thread.
///
/// Each sound plays on a thread of its own that ends with it: a sound server that does not answer
/// held the play call for 20 s. While two threads are held like that, further sounds are dropped.
class ThemeSoundPlayer final : public capture::SoundPlayer {
  public:
    /// `fallbackDirectory` holds the sounds that come with the program, as `NAME.wav`.
    ThemeSoundPlayer(XdgDirectories directories, std::string fallbackDirectory);

    [[nodiscard]] std::optional<capture::Sound> soundNamed(const std::string& name) override;
    [[nodiscard]] std::optional<capture::Sound> soundInFallbackFile(
        const std::string& name) override;
    void play(const capture::Sound& sound) override;

  private:
    XdgDirectories directories_;
    std::string fallbackDirectory_;
    /// Sounds that play or hang; shared with their threads, which may outlive the player.
    std::shared_ptr<std::atomic<int>> playingCount_ = std::make_shared<std::atomic<int>>(0);
};

}  // namespace platform::freedesktop
