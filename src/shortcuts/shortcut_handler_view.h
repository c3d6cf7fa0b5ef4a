#pragma once

#include <cstdint>

#include "shortcuts/binding.h"
#include "shortcuts/key_monitor.h"
#include "shortcuts/shortcut_ns_view.h"

namespace shortcuts {

/// Turns the keys that a recorder is given into the bound pair: the first key-down ends the
/// recording and, unless it is Escape, is the new shortcut. Main thread.
class ShortcutHandlerView {
  public:
    using Recording = ShortcutNSView::Recording;

    struct Coordinator {
        /// The modifier mask of a stored shortcut for an event's flags; flags other than command,
        /// shift, option and control are dropped.
        [[nodiscard]] std::int64_t carbonModifiers(std::uint32_t modifierFlags) const;
    };

    /// `keyMonitor` must outlive the object.
    ShortcutHandlerView(KeyMonitor& keyMonitor, Binding<Recording> isRecording,
                        Binding<std::int64_t> keyCode, Binding<std::int64_t> modifiers);

    /// Follows the bound state.
    void update();

  private:
    ShortcutNSView::Consumed onEvent(const KeyEvent& event);

    Binding<Recording> isRecording_;
    Binding<std::int64_t> keyCode_;
    Binding<std::int64_t> modifiers_;
    Coordinator coordinator_;
    ShortcutNSView view_;
};

}  // namespace shortcuts
