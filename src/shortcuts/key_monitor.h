#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace shortcuts {

enum class KeyEventType {
    keyDown,
    /// A modifier key was pressed or let go.
    flagsChanged,
};

/// What the handler made of an event.
enum class KeyVerdict { pass, swallow };

// The modifiers of an event, combined by OR. The numbers are those of the Apple keyboard's events
// (NSEvent.ModifierFlags); a system may set other bits too.
inline constexpr std::uint32_t capsLockFlag = 1U << 16;
inline constexpr std::uint32_t shiftFlag = 1U << 17;
inline constexpr std::uint32_t controlFlag = 1U << 18;
inline constexpr std::uint32_t optionFlag = 1U << 19;
inline constexpr std::uint32_t commandFlag = 1U << 20;
inline constexpr std::uint32_t numericPadFlag = 1U << 21;

struct KeyEvent {
    KeyEventType type = KeyEventType::keyDown;
    /// Virtual key code: a position, not a letter.
    std::uint32_t keyCode = 0;
    /// The modifiers that are on: at a key-down those it is pressed with, after the change at
    /// `flagsChanged`.
    std::uint32_t modifierFlags = 0;
};

/// A monitor that is installed; destroying it ends its events at once.
class InstalledKeyMonitor {
  public:
    virtual ~InstalledKeyMonitor() = default;
};

/// The keys that are pressed while a window of this program has the input, before any control sees
/// them. Main thread.
///
/// While a monitor is installed and a window of this program has the input, a key does nothing
/// else: no hot key fires, of this program or of another one. A key without a virtual key code is
/// not reported and goes its usual way. What follows a swallowed key-down, its repeats and its
/// release, reaches nobody, also when the monitor is gone by then. All of that as far as the system
/// allows it.
class KeyMonitor {
  public:
    /// Called for one event; may destroy any monitor, its own too.
    using Handler = std::function<KeyVerdict(const KeyEvent&)>;

    virtual ~KeyMonitor() = default;
    /// The newest monitor is asked first, the older ones when it lets an event pass.
    [[nodiscard]] virtual std::unique_ptr<InstalledKeyMonitor> install(Handler handler) = 0;
};

}  // namespace shortcuts
