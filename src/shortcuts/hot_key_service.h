#pragma once

#include <cstdint>
#include <functional>

namespace shortcuts {

/// The identity under which a hot key is registered and by which its presses are told apart.
struct EventHotKeyID {
    std::uint32_t signature = 0;
    std::uint32_t id = 0;
    friend bool operator==(const EventHotKeyID&, const EventHotKeyID&) = default;
};

/// A status number of the hot-key service; anything but `noErr` is a failure.
using OSStatus = std::int32_t;
inline constexpr OSStatus noErr = 0;
/// The key does not exist on this keyboard, or a value is out of range.
inline constexpr OSStatus paramErr = -50;
/// The combination is taken, by another program or by an earlier registration of this one.
inline constexpr OSStatus eventHotKeyExistsErr = -9878;

/// Modifier masks of stored shortcuts, combined by OR.
inline constexpr std::uint32_t commandModifier = 256;
inline constexpr std::uint32_t shiftModifier = 512;
inline constexpr std::uint32_t optionModifier = 2048;
inline constexpr std::uint32_t controlModifier = 4096;

using HotKeyRef = std::uint64_t;
using EventHandlerRef = std::uint64_t;

/// System-wide hot keys. Main thread, the calls of the handler included.
class HotKeyService {
  public:
    /// Called once for each press (a held key is one press); returns `noErr` when handled.
    using Handler = std::function<OSStatus(EventHotKeyID)>;

    template <typename Ref>
    struct Registration {
        OSStatus status = noErr;
        /// Meaningful when `status` is `noErr`.
        Ref ref = 0;
    };

    virtual ~HotKeyService() = default;
    /// `keyCode` is a virtual key code (a position, not a letter), `modifiers` an OR of the masks.
    virtual Registration<HotKeyRef> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                   EventHotKeyID hotKeyID) = 0;
    virtual OSStatus unregisterHotKey(HotKeyRef ref) = 0;
    /// Presses without an installed handler have no effect.
    virtual Registration<EventHandlerRef> installEventHandler(Handler handler) = 0;
    virtual OSStatus removeEventHandler(EventHandlerRef ref) = 0;
};

}  // namespace shortcuts
