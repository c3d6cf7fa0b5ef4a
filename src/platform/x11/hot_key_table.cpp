#include "platform/x11/hot_key_table.h"

#include <algorithm>

namespace platform::x11 {

bool HotKeyTable::contains(xcb_keycode_t keycode, ModifierMask mask) const {
    return std::ranges::any_of(hotKeys_, [&](const auto& entry) {
        return entry.second.keycode == keycode && entry.second.mask == mask;
    });
}

shortcuts::HotKeyRef HotKeyTable::add(const RegisteredHotKey& hotKey) {
    hotKeys_.emplace(++lastRef_, hotKey);
    return lastRef_;
}

std::optional<RegisteredHotKey> HotKeyTable::remove(shortcuts::HotKeyRef ref) {
    const auto entry = hotKeys_.find(ref);
    if (entry == hotKeys_.end()) {
        return std::nullopt;
    }
    const RegisteredHotKey hotKey = entry->second;
    hotKeys_.erase(entry);
    return hotKey;
}

std::optional<shortcuts::EventHotKeyID> HotKeyTable::find(const ModifierMap& map,
                                                          xcb_keycode_t keycode,
                                                          std::uint16_t state) const {
    for (const auto& [ref, hotKey] : hotKeys_) {
        if (hotKey.keycode == keycode && hotKey.mask && hasModifiers(map, state, *hotKey.mask)) {
            return hotKey.hotKeyID;
        }
    }
    return std::nullopt;
}

}  // namespace platform::x11
