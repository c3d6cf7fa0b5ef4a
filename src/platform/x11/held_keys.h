#pragma once

#include <xcb/xcb.h>

#include <array>
#include <bitset>
#include <cstdint>

namespace platform::x11 {

/// Which keys are down, so that a press can be told from the repeats of a held key. Main thread.
///
/// Repeats come without releases in between (see `becomeXkbClient`).
class HeldKeys {
  public:
    enum class Press {
        first,
        repeat,
        /// The key is still down from the press that was a hot key.
        repeatOfHotKey,
    };

    /// Notes a press at the server's `time` (milliseconds) and says what kind it is.
    ///
    /// A press long after the last one of the same key is a first one, although no release was
    /// seen: a held key repeats in far shorter intervals, and a grab that ended can have taken the
    /// release with it.
    Press press(xcb_keycode_t keycode, xcb_timestamp_t time);
    /// The press just noted was a hot key.
    void markHotKey(xcb_keycode_t keycode) { hotKeys_.set(keycode); }
    void release(xcb_keycode_t keycode);
    void releaseAll();
    /// Forgets the keys that are up in `down`, one bit for each keycode.
    void keepOnly(const std::bitset<256>& down);
    [[nodiscard]] bool isHotKeyHeld() const { return hotKeys_.any(); }

  private:
    std::bitset<256> down_;
    std::bitset<256> hotKeys_;
    std::array<xcb_timestamp_t, 256> lastPress_{};
};

}  // namespace platform::x11
