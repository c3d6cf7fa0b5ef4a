#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "desktop/process.h"
#include "desktop/x_client.h"

namespace desktop {

enum class WindowManager { none, openbox, xfwm4, kwin, mutter, i3 };
/// picom blends with xrender, without fading or shadows; `picomFading` with its fades on,
/// `picomShadows` with its shadows too, `picomGlx` with OpenGL in software. `builtIn` is the window
/// manager's own, which mutter always has and for xfwm4 and kwin can be switched.
enum class Compositor { none, picom, picomFading, picomShadows, picomGlx, builtIn };

/// How a program of the desktop is started: its command, and what its environment has in addition.
struct Start {
    std::vector<std::string> command;
    Environment environment;
};

/// Writes the window manager's configuration into `configuration` (the person's XDG_CONFIG_HOME).
Start windowManagerStart(WindowManager manager, Compositor compositor,
                         const std::filesystem::path& configuration);
/// None for those that have no program of their own.
Start compositorStart(Compositor compositor);
/// Waits until the window manager has taken care of a first window: all of them announce themselves
/// before they listen.
void awaitWindowManager(const XClient& client);

}  // namespace desktop
