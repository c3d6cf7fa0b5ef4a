#include "platform/freedesktop/theme_sound_player.h"

#include <unistd.h>

#include <system_error>
#include <thread>
#include <utility>

#include "platform/freedesktop/canberra_sound.h"
#include "platform/freedesktop/sound_theme.h"

namespace platform::freedesktop {

namespace {

constexpr int mostSoundsAtOnce = 2;

}  // namespace

ThemeSoundPlayer::ThemeSoundPlayer(XdgDirectories directories, std::string fallbackDirectory)
    : directories_(std::move(directories)), fallbackDirectory_(std::move(fallbackDirectory)) {}

std::optional<capture::Sound> ThemeSoundPlayer::soundNamed(const std::string& name) {
    const auto path = findSound(directories_, name);
    return path ? std::optional(capture::Sound{name, *path}) : std::nullopt;
}

std::optional<capture::Sound> ThemeSoundPlayer::soundInFallbackFile(const std::string& name) {
    const std::string path = fallbackDirectory_ + "/" + name + ".wav";
    const bool isReadable = ::access(path.c_str(), R_OK) == 0;
    return isReadable ? std::optional(capture::Sound{name, path}) : std::nullopt;
}

void ThemeSoundPlayer::play(const capture::Sound& sound) {
    if (*playingCount_ >= mostSoundsAtOnce) {
        return;
    }
    ++*playingCount_;
    try {
        std::thread([path = sound.path, playingCount = playingCount_] {
            playThroughCanberra(path);
            --*playingCount;
        }).detach();
    } catch (const std::system_error&) {
        --*playingCount_;
    }
}

}  // namespace platform::freedesktop
