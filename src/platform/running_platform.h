#pragma once

#include <functional>
#include <string>

#include "app/notification_center.h"
#include "base/log.h"
#include "platform/platform.h"

namespace app {
class MenuBarCommands;
class Scenes;
}  // namespace app

namespace platform {

/// What a system needs to start.
struct StartOptions {
    /// As `main` was given it.
    char** arguments = nullptr;
    /// Both outlive the platform.
    app::NotificationCenter& notifications;
    base::Log& log;
};

/// What other programs ask of this one; called on the main thread, in a turn of its own.
struct Requests {
    std::function<void()> activate;
    /// "screenshot" or "recognize-text".
    std::function<void(const std::string& action)> performAction;
};

/// Whether this process is the program, or only the messenger of a second start.
enum class Instance { first, second };

/// One system at work: its ports, its main loop and what it shows of the program. Main thread.
class RunningPlatform {
  public:
    virtual ~RunningPlatform() = default;
    [[nodiscard]] virtual const Platform& ports() const = 0;
    /// Makes the program reachable for other programs. When it runs already, the first instance is
    /// asked to show itself and this process has nothing more to do.
    virtual Instance serve(Requests requests) = 0;
    /// What the windows of the program are made from, for as long as `run` runs. To be called
    /// before the first scene is opened.
    virtual void showScenes(app::Scenes& scenes) = 0;
    /// Puts the menu where the system has its menus, and its commands into every window. The menu
    /// outlives `run`.
    virtual void showMenu(app::MenuBarCommands& menu) = 0;
    /// Runs the main loop until the program is ended, and gives the exit status.
    virtual int run() = 0;
};

}  // namespace platform
