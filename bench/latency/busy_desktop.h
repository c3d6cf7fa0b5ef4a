#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "desktop/desktop.h"

namespace latency {

/// A virtual desktop as somebody works on it: a wallpaper like a photograph, a web page, three
/// terminals full of text, a window manager, a notification daemon and a tray.
class BusyDesktop {
  public:
    /// `content` is what make-content left. Without it, or on a screen that is too small for the
    /// windows, the desktop stays empty.
    BusyDesktop(desktop::DesktopOptions options, const std::filesystem::path& content);

    [[nodiscard]] desktop::Desktop& get() { return desktop_; }
    /// Starts another program of the person; it stays until the desktop goes.
    void keep(std::unique_ptr<desktop::Process> program);
    /// Throws std::runtime_error when a program that was started here has ended; `after` says when.
    void requireWhole(const std::string& after) const;
    [[nodiscard]] std::filesystem::path downloads() const { return desktop_.home() / "Downloads"; }
    /// The processes of the X server and of the compositor, 0 when there is none.
    [[nodiscard]] pid_t serverProcess();
    [[nodiscard]] pid_t compositorProcess();

  private:
    void openWindows(const std::filesystem::path& content);
    void openTerminal(const std::string& name, const std::vector<std::string>& look,
                      const std::string& command);

    desktop::Compositor compositor_;
    desktop::Desktop desktop_;
    std::vector<std::unique_ptr<desktop::Process>> programs_;
};

}  // namespace latency
