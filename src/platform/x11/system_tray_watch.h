#pragma once

#include <functional>

#include "platform/x11/connection.h"

namespace platform::x11 {

/// Tells once when the screen has a system tray of the XEmbed kind. Main thread.
///
/// Source of the selection's name: freedesktop.org System Tray Protocol 0.3.
class SystemTrayWatch {
  public:
    /// `onPresent` may be called before the constructor returns. `connection` must outlive this.
    SystemTrayWatch(Connection& connection, std::function<void()> onPresent);

  private:
    void tell();

    std::function<void()> onPresent_;
    Connection::Subscription subscription_;
};

}  // namespace platform::x11
