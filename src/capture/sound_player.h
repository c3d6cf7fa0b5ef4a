#pragma once

#include <memory>
#include <optional>
#include <string>

namespace capture {

/// A sound that can be played.
struct Sound {
    std::string name;
    /// The file behind it, empty where the system knows it by its name alone.
    std::string path;
    /// What a player keeps with it, for itself alone.
    std::shared_ptr<const void> backing = {};
};

/// Plays short sounds. Main thread; nothing here waits for a sound server.
class SoundPlayer {
  public:
    virtual ~SoundPlayer() = default;
    /// One of the sounds that the desktop has by name.
    [[nodiscard]] virtual std::optional<Sound> soundNamed(const std::string& name) = 0;
    /// The sound in the file that stands in for a name that the desktop does not have.
    [[nodiscard]] virtual std::optional<Sound> soundInFallbackFile(const std::string& name) = 0;
    /// Starts playback and returns. Without a sound server nothing is heard.
    virtual void play(const Sound& sound) = 0;
};

}  // namespace capture
