#pragma once

#include <cstdint>
#include <functional>

#include "app/notification_center.h"
#include "base/capture_mode.h"
#include "shortcuts/shortcut_manager.h"

namespace ui {

/// The shortcut of one mode as its recorder shows and sets it. Main thread.
class ModeShortcut {
  public:
    /// `manager` outlives the object.
    ModeShortcut(shortcuts::ShortcutManager& manager, base::CaptureMode mode)
        : manager_(manager), mode_(mode) {}

    [[nodiscard]] std::int64_t keyCode() const;
    [[nodiscard]] std::int64_t modifiers() const;
    // Each set stores the value and registers the hot keys anew.
    void setKeyCode(std::int64_t keyCode) const;
    void setModifiers(std::int64_t modifiers) const;

    /// Whether the shortcut is Command+Shift+1 or Command+Shift+2.
    [[nodiscard]] bool isDefault() const;
    /// Sets the key code of the default, then its modifiers.
    void reset() const;

    /// Calls `observer` before each change of any shortcut, as long as the result lives.
    [[nodiscard]] app::NotificationCenter::Observation observeChanges(
        std::function<void()> observer) const;

  private:
    [[nodiscard]] std::int64_t defaultKeyCode() const;

    shortcuts::ShortcutManager& manager_;
    base::CaptureMode mode_;
};

}  // namespace ui
