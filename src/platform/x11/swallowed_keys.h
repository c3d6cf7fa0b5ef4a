#pragma once

#include <xcb/xcb.h>

#include <array>
#include <bitset>
#include <cstdint>
#include <optional>

namespace platform::x11 {

/// The keys whose press was swallowed, until they are really up: what follows of them is to reach
/// nobody. Main thread.
///
/// The toolkit's connection tells auto-repeat as a release and a press of the same time, so a
/// release alone does not say that the key is up; `settle` finds out.
class SwallowedKeys {
  public:
    void add(xcb_keycode_t keycode) { down_.set(keycode); }
    /// The press was not swallowed after all.
    void remove(xcb_keycode_t keycode) { down_.reset(keycode); }
    /// Whether a press is the repeat of a swallowed one.
    [[nodiscard]] bool isRepeat(const xcb_key_press_event_t& event,
                                std::uint32_t fullSequence) const;
    /// Notes a release; false for one of a key that was not swallowed.
    bool release(xcb_keycode_t keycode, xcb_timestamp_t time);
    /// Of the keys released since the last call those that are `physicallyDown` only repeat, as the
    /// server has told in answer to the request of number `sequence`.
    void settle(const std::bitset<256>& physicallyDown, std::uint32_t sequence);
    void clear();
    [[nodiscard]] bool isAnyDown() const { return down_.any(); }

  private:
    std::bitset<256> down_;
    /// Since the last `settle`, and at any time.
    std::bitset<256> released_;
    std::bitset<256> wasReleased_;
    std::array<xcb_timestamp_t, 256> releaseTime_{};
    /// Before the first answer no event is older than it.
    std::optional<std::uint32_t> settledSequence_;
};

}  // namespace platform::x11
