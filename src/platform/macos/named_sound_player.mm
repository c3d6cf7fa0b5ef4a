#include "platform/macos/named_sound_player.h"

#import <AppKit/AppKit.h>

#include "platform/macos/foundation_text.h"
#include "platform/macos/object_backing.h"

namespace platform::macos {

namespace {

/// None where the system has no such sound.
std::optional<capture::Sound> soundWith(const std::string& name, NSSound* found) {
    if (found == nil) {
        return std::nullopt;
    }
    return capture::Sound{.name = name, .path = {}, .backing = backingFrom(found)};
}

}  // namespace

std::optional<capture::Sound> NamedSoundPlayer::soundNamed(const std::string& name) {
    return soundWith(name, [NSSound soundNamed:stringFrom(name)]);
}

std::optional<capture::Sound> NamedSoundPlayer::soundInFallbackFile(const std::string& name) {
    NSString* const file = stringFrom("/System/Library/Sounds/" + name + ".aiff");
    return soundWith(name, [[NSSound alloc] initWithContentsOfFile:file byReference:YES]);
}

void NamedSoundPlayer::play(const capture::Sound& sound) {
    playing_ = sound;
    [(__bridge NSSound*)playing_.backing.get() play];
}

}  // namespace platform::macos
