#pragma once

#include <string>
#include <vector>

#include "platform/freedesktop/program_starter.h"

namespace platform::freedesktop {

/// What a page of the system's settings is about.
enum class SettingsPage { screen, keyboard, files, unknown };

/// By the URL that names the page on the system for which the program was conceived.
SettingsPage settingsPageOf(const std::string& url);

/// What opens the page that matters on one of `desktops` (the parts of $XDG_CURRENT_DESKTOP), best
/// first; none on a desktop without one.
std::vector<ProgramCommand> settingsPageCommands(SettingsPage page,
                                                 const std::vector<std::string>& desktops);

}  // namespace platform::freedesktop
