#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

#include "base/result.h"

namespace overlay {

enum class TapEventType { keyDown, tapDisabled };
enum class TapVerdict { pass, swallow };

struct TapEvent {
    TapEventType type = TapEventType::keyDown;
    /// Virtual key code; `unknownKeyCode` for a key that has none.
    std::uint32_t keyCode = 0;
};
inline constexpr std::uint32_t unknownKeyCode = 0xFFFF;

/// A tap that is installed; destroying it disables it and ends the events at once, and frees the
/// keyboard in a later turn unless there is another tap by then.
class EventTap {
  public:
    virtual ~EventTap() = default;
};

/// Sees every key-down of the session before any application does. Main thread.
class KeyboardTap {
  public:
    /// Decides what becomes of one event. Called on the main thread, auto-repeats included.
    using Handler = std::function<TapVerdict(const TapEvent&)>;

    virtual ~KeyboardTap() = default;
    /// Installs and enables a tap ahead of all others. Fails while the system refuses (somebody
    /// else holds the keyboard, no permission).
    virtual base::Result<std::unique_ptr<EventTap>> create(Handler handler) = 0;
    /// Calls `ready` exactly once, on the main thread in a later turn: as soon as a tap could be
    /// created, or when `limit` has passed.
    virtual void whenAvailable(std::chrono::milliseconds limit, std::function<void()> ready) = 0;
};

}  // namespace overlay
