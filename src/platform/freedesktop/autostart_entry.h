#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace platform::freedesktop {

/// What a session does with a file in an autostart directory.
enum class AutostartState {
    /// Starts a program that is there.
    started,
    /// Starts nothing: the user or the system has switched the entry off, for this desktop at
    /// least.
    switchedOff,
    /// Starts nothing: the program is not there.
    programMissing,
    /// Starts nothing: this is no entry of an application.
    broken,
};

/// The state of an entry with this text on a desktop of these names ($XDG_CURRENT_DESKTOP).
///
/// Source of the rules: Desktop Application Autostart Specification 0.5, and the keys with which
/// GNOME's, Cinnamon's and MATE's settings switch an entry off.
AutostartState stateOfAutostartEntry(std::string_view text,
                                     const std::vector<std::string>& currentDesktops);

/// The text of an entry that starts `program`, an absolute path, at log-in: no terminal, no busy
/// pointer, no complaint when the program has been removed.
std::string autostartEntryFor(std::string_view program);

/// The text of an entry that hides those of the same name in the system's directories.
std::string hidingAutostartEntry();

}  // namespace platform::freedesktop
