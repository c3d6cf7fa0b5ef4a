#include "platform/macos/named_sound_player.h"

#import <AppKit/AppKit.h>

#include "platform/macos/foundation_text.h"

namespace platform::macos {

namespace {

NSSound* _Nullable loadSound(const capture::Sound& sound) {
    if (sound.path.empty()) {
        return [NSSound soundNamed:stringFrom(sound.name)];
    }
    return [[NSSound alloc] initWithContentsOfFile:stringFrom(sound.path) byReference:YES];
}

std::optional<capture::Sound> playable(const capture::Sound& sound) {
    return loadSound(sound) == nil ? std::nullopt : std::optional(sound);
}

}  // namespace

struct NamedSoundPlayer::Playing {
    NSSound* sound = nil;
};

NamedSoundPlayer::NamedSoundPlayer() : playing_(std::make_unique<Playing>()) {}

NamedSoundPlayer::~NamedSoundPlayer() = default;

std::optional<capture::Sound> NamedSoundPlayer::soundNamed(const std::string& name) {
    return playable({.name = name, .path = {}});
}

std::optional<capture::Sound> NamedSoundPlayer::soundInFallbackFile(const std::string& name) {
    return playable({.name = name, .path = "/System/Library/Sounds/" + name + ".aiff"});
}

void NamedSoundPlayer::play(const capture::Sound& sound) {
    playing_->sound = loadSound(sound);
    [playing_->sound play];
}

}  // namespace platform::macos
