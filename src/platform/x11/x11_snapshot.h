#pragma once

#include <memory>

#include "platform/x11/connection.h"
#include "platform/x11/overlay_stage.h"

namespace platform::x11 {

/// A copy of one display that the server makes and keeps. Main thread; must not outlive the
/// connection.
class X11Snapshot final : public Snapshot {
  public:
    /// The display as it is when the requests sent so far are done. No round trip.
    static std::shared_ptr<const X11Snapshot> take(Connection& connection, const NativeRect& frame);
    ~X11Snapshot() override;
    X11Snapshot(const X11Snapshot&) = delete;
    X11Snapshot& operator=(const X11Snapshot&) = delete;

    [[nodiscard]] xcb_pixmap_t pixmap() const override { return pixmap_; }
    [[nodiscard]] NativeRect frame() const override { return frame_; }
    /// Waits for the server where it is asked right after the taking.
    [[nodiscard]] bool isTaken() const override;

  private:
    enum class State { unknown, taken, refused };

    X11Snapshot(Connection& connection, const NativeRect& frame);

    Connection& connection_;
    xcb_pixmap_t pixmap_;
    NativeRect frame_;
    xcb_void_cookie_t creation_{};
    mutable State state_ = State::unknown;
};

}  // namespace platform::x11
