#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "capture/sound_player.h"
#include "doubles/call_log.h"

namespace doubles {

/// Knows "Hero" and "Glass" by name at first. In a call log: "sound named: <name>",
/// "sound file: <name>", "sound play: <name>".
class FakeSoundPlayer final : public capture::SoundPlayer, public Recorder {
  public:
    std::optional<capture::Sound> soundNamed(const std::string& name) override {
        record("sound named: " + name);
        return find(named, name);
    }
    std::optional<capture::Sound> soundInFallbackFile(const std::string& name) override {
        record("sound file: " + name);
        return find(fallbackFiles, name);
    }
    void play(const capture::Sound& sound) override {
        record("sound play: " + sound.name);
        played.push_back(sound.path);
    }

    /// Paths by name.
    std::map<std::string, std::string> named{{"Hero", "theme/Hero"}, {"Glass", "theme/Glass"}};
    std::map<std::string, std::string> fallbackFiles;
    /// The paths of the sounds that were started.
    std::vector<std::string> played;

  private:
    static std::optional<capture::Sound> find(const std::map<std::string, std::string>& sounds,
                                              const std::string& name) {
        const auto entry = sounds.find(name);
        if (entry == sounds.end()) {
            return std::nullopt;
        }
        return capture::Sound{name, entry->second};
    }
};

}  // namespace doubles
