#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>

#include "platform/x11/connection.h"
#include "platform/x11/native_geometry.h"

namespace platform::x11 {

/// Tells of every rectangle of the screen that is painted as long as this exists. Main thread.
///
/// Under a compositor only the compositor paints the screen, the windows have pixmaps of their own.
/// An idle program must not hold one: a busy screen wakes it with every painting.
class DamageWatch {
  public:
    /// `rect` was painted after the server had done the request number `sequence` of this
    /// connection (see `isAfter`).
    using Handler = std::function<void(const NativeRect& rect, std::uint32_t sequence)>;

    DamageWatch(Connection& connection, Handler handler);
    ~DamageWatch();
    DamageWatch(const DamageWatch&) = delete;
    DamageWatch& operator=(const DamageWatch&) = delete;

    /// Whether an event with the number `sequence` comes after the effect of `request`. The numbers
    /// wrap around.
    [[nodiscard]] static bool isAfter(std::uint32_t sequence, xcb_void_cookie_t request);

  private:
    Connection& connection_;
    std::uint32_t damage_;
    Connection::Subscription subscription_;
};

}  // namespace platform::x11
