#pragma once

#include <string>
#include <vector>

#include "journeys/session.h"

namespace journeys {

/// The program's permissions window, seen and used as a person does: found through what an
/// assistive program reads of it, clicked with the pointer.
class PermissionsPanel {
  public:
    /// `session`'s desktop has accessibility on; it outlives the object.
    explicit PermissionsPanel(Session& session) : session_(session) {}

    /// Returns when the window is on the screen and has the input.
    void waitUntilOpen();
    /// The visible texts and buttons of the window, from the top.
    [[nodiscard]] std::vector<desktop::Accessible> objects();
    /// What stands behind the name of a permission: "Granted", or "Not Granted" and the name of
    /// the button.
    [[nodiscard]] std::vector<std::string> status(const std::string& permission);
    /// Waits for a status of a permission: its first word or words.
    void waitForStatus(const std::string& permission, const std::string& status);
    /// The one button below the rows.
    [[nodiscard]] desktop::Accessible action();
    void waitForAction(const std::string& name);
    /// The application icon, which is there to be dragged.
    [[nodiscard]] desktop::Accessible icon();
    /// "Open Settings" of a permission that is not granted.
    [[nodiscard]] desktop::Accessible settingsButton(const std::string& permission);

  private:
    /// Everything in the window that is shown.
    [[nodiscard]] std::vector<desktop::Accessible> everything();

    Session& session_;
};

}  // namespace journeys
