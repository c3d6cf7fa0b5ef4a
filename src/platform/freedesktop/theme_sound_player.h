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
/// A helper program plays each sound and ends with it, and a thread that ends with the helper waits
/// for that: what plays sounds stays out of this program's memory, and a sound server that does not
/// answer holds nobody up. While two helpers are held like that, further sounds are dropped.
class ThemeSoundPlayer final : public capture::SoundPlayer {
  public:
    /// `fallbackDirectory` holds the sounds that come with the program, as `NAME.wav`; `helper` is
    /// the path of the helper program, without which nothing is heard.
    ThemeSoundPlayer(XdgDirectories directories, std::string fallbackDirectory, std::string helper);

    [[nodiscard]] std::optional<capture::Sound> soundNamed(const std::string& name) override;
    [[nodiscard]] std::optional<capture::Sound> soundInFallbackFile(
        const std::string& name) override;
    void play(const capture::Sound& sound) override;

  private:
    XdgDirectories directories_;
    std::string fallbackDirectory_;
    std::string helper_;
    /// Sounds that play or hang; shared with their threads, which may outlive the player.
    std::shared_ptr<std::atomic<int>> playingCount_ = std::make_shared<std::atomic<int>>(0);
};

}  // namespace platform::freedesktop
