#pragma once

#include <QApplication>
#include <functional>
#include <memory>

#include "desktop/desktop.h"

namespace qt_tests {

/// This process as a program on a private desktop with a window manager: made at the first use,
/// one for all tests of the process, since the toolkit can be started only once.
class QtSession {
  public:
    static QtSession& shared();
    /// To be called before `main` returns: the toolkit must end before the static objects do.
    static void end();

    [[nodiscard]] desktop::Desktop& desktop() { return desktop_; }

  private:
    QtSession();
    desktop::Desktop desktop_;
    int argumentCount_ = 1;
    char name_[10] = "lumaframe";
    char* arguments_[2] = {name_, nullptr};
    std::unique_ptr<QApplication> application_;
};

/// Runs the event loop until `condition` holds; false when it does not within the limit.
bool runUntil(const std::function<bool()>& condition,
              std::chrono::milliseconds limit = desktop::defaultLimit);

}  // namespace qt_tests
