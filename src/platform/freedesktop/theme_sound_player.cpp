#include "platform/freedesktop/theme_sound_player.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "platform/freedesktop/sound_theme.h"
#include "platform/helper/child_process.h"

namespace platform::freedesktop {

namespace {

constexpr int mostSoundsAtOnce = 2;
/// More than the helper takes for the longest sound; a sound server that does not answer held its
/// call for 20 s.
constexpr std::chrono::milliseconds helperTime{15000};

/// The sound server is found by it, and by the person's own settings for it.
std::vector<std::string> wholeEnvironment() {
    std::vector<std::string> variables;
    for (char** variable = environ; *variable != nullptr; ++variable) {
        variables.emplace_back(*variable);
    }
    return variables;
}

/// Returns when the helper has ended, or was killed because it did not. It dies with the thread
/// that calls this.
void playInHelper(const helper::ChildCommand& command) {
    const auto child = helper::ChildProcess::start(command);
    if (!child) {
        return;
    }
    const auto end = std::chrono::steady_clock::now() + helperTime;
    pollfd ended{child.value()->endDescriptor(), POLLIN, 0};
    int outcome = -1;
    do {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
            end - std::chrono::steady_clock::now());
        outcome = ::poll(&ended, 1, std::max(static_cast<int>(left.count()), 0));
    } while (outcome < 0 && errno == EINTR);
}

}  // namespace

ThemeSoundPlayer::ThemeSoundPlayer(XdgDirectories directories, std::string fallbackDirectory,
                                   std::string helper)
    : directories_(std::move(directories)),
      fallbackDirectory_(std::move(fallbackDirectory)),
      helper_(std::move(helper)) {}

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
        std::thread([command = helper::ChildCommand{.path = helper_,
                                                    .arguments = {sound.path},
                                                    .environment = wholeEnvironment()},
                     playingCount = playingCount_] {
            playInHelper(command);
            --*playingCount;
        }).detach();
    } catch (const std::system_error&) {
        --*playingCount_;
    }
}

}  // namespace platform::freedesktop
