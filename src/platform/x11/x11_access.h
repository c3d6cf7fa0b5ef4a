#pragma once

#include <optional>

#include "platform/x11/connection.h"

namespace platform::x11 {

/// What the X server lets this program do. Each question is a round trip at most, and leaves
/// nothing behind. Main thread.
class X11Access {
  public:
    /// `connection` must outlive the object.
    explicit X11Access(Connection& connection) : connection_(connection) {}

    /// Whether it gives the pixels of the root window: not to a program that connected as an
    /// untrusted one.
    [[nodiscard]] bool canReadScreen() const;
    /// Whether it gives a key of the root window: not to an untrusted program, and not while
    /// another program holds every key.
    [[nodiscard]] bool canGrabKeys() const;
    /// Whether the server only shows X11 windows to a Wayland compositor.
    [[nodiscard]] bool isXwayland() const;

  private:
    Connection& connection_;
    mutable std::optional<bool> isXwayland_;
};

}  // namespace platform::x11
