#pragma once

#include <QPointer>
#include <QWidget>
#include <string>

namespace platform::qt {

/// Shows a page of help in a window of the program's own, for a session without a browser. Main
/// thread.
class HelpWindow {
  public:
    /// `path` is that of an HTML file. A window that is open already comes to the front.
    void show(const std::string& path);

  private:
    QPointer<QWidget> window_;
};

}  // namespace platform::qt
