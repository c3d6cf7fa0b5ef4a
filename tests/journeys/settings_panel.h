#pragma once

#include <string>
#include <vector>

#include "journeys/session.h"

namespace journeys {

/// The program's settings window, seen and used as a person does: found through what an assistive
/// program reads of it, clicked with the pointer.
class SettingsPanel {
  public:
    /// `session`'s desktop has accessibility on; it outlives the object.
    explicit SettingsPanel(Session& session) : session_(session) {}

    /// Returns when the window is on the screen and has the input.
    void waitUntilOpen();
    /// The visible controls and texts of the window in reading order, without its layout.
    [[nodiscard]] std::vector<desktop::Accessible> objects();
    /// The `index`th object from the top left with this role and name; throws when there is none.
    [[nodiscard]] desktop::Accessible object(const std::string& role, const std::string& name,
                                             std::size_t index = 0);
    [[nodiscard]] bool isChecked(const std::string& label, std::size_t index = 0) {
        return object("check box", label, index).isChecked();
    }
    /// Clicks a switch and waits until it has changed.
    void toggle(const std::string& label, std::size_t index = 0);
    /// Chooses `folder` in the folder dialog of the `index`th column that shows "Downloads", by
    /// typing its path.
    void chooseFolder(std::size_t index, const std::string& folder);
    /// Types text into what has the keyboard; letters, digits, slash, minus and dot.
    void type(const std::string& text);

  private:
    Session& session_;
};

}  // namespace journeys
