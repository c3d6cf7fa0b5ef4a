#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <map>
#include <optional>

#include "platform/x11/modifier_map.h"
#include "shortcuts/hot_key_service.h"

namespace platform::x11 {

/// One hot key as it was registered and as the keyboard has it.
struct RegisteredHotKey {
    shortcuts::EventHotKeyID hotKeyID;
    xcb_keycode_t keycode = 0;
    /// As registered, an OR of `shortcuts::commandModifier` and its like.
    std::uint32_t modifiers = 0;
    /// The same as modifier bits; none while the keyboard cannot give them.
    std::optional<ModifierMask> mask;
};

/// The registered hot keys, and which of them a press belongs to: by passive grab or, while a tap
/// holds the keyboard, without one. Main thread.
class HotKeyTable {
  public:
    /// Whether a hot key with the same key and modifier bits is in the table.
    [[nodiscard]] bool contains(xcb_keycode_t keycode, ModifierMask mask) const;
    shortcuts::HotKeyRef add(const RegisteredHotKey& hotKey);
    /// Takes the hot key out; none when there is none of that number.
    std::optional<RegisteredHotKey> remove(shortcuts::HotKeyRef ref);
    [[nodiscard]] std::map<shortcuts::HotKeyRef, RegisteredHotKey>& entries() { return hotKeys_; }

    /// The hot key of a press of `keycode` in the state `state`, none when it is none.
    [[nodiscard]] std::optional<shortcuts::EventHotKeyID> find(const ModifierMap& map,
                                                               xcb_keycode_t keycode,
                                                               std::uint16_t state) const;

  private:
    std::map<shortcuts::HotKeyRef, RegisteredHotKey> hotKeys_;
    shortcuts::HotKeyRef lastRef_ = 0;
};

}  // namespace platform::x11
