#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "shortcuts/binding.h"
#include "shortcuts/key_monitor.h"
#include "shortcuts/shortcut_handler_view.h"

namespace shortcuts {

/// What a host gives to a shortcut recorder.
struct RecorderFields {
    /// Virtual key code of the shortcut.
    Binding<std::int64_t> keyCode;
    /// Modifier mask of the shortcut.
    Binding<std::int64_t> modifiers;
    /// Whether the pair is the default; there is nothing to reset then.
    std::function<bool()> isDefault;
    /// Sets the default; empty when there is none.
    std::function<void()> resetAction;
};

/// A shortcut recorder without its picture: what it shows and what a click does. Main thread.
class RecorderModel {
  public:
    /// `keyMonitor` must outlive the model. `onChange` is called after each change of the recording
    /// state.
    RecorderModel(RecorderFields fields, KeyMonitor& keyMonitor, std::function<void()> onChange);
    RecorderModel(const RecorderModel&) = delete;
    RecorderModel& operator=(const RecorderModel&) = delete;

    /// A click on the pill: begins to record, or ends it without a change.
    void toggle();
    /// Ends a recording without a change; nothing when there is none.
    void cancel();
    /// A click on the reset button.
    void reset();
    /// The bound values may have changed.
    void update() { handlerView_.update(); }

    [[nodiscard]] bool isRecording() const {
        return isRecording_ == ShortcutHandlerView::Recording::yes;
    }
    /// What the pill says.
    [[nodiscard]] std::string label() const;
    /// The label with words for its symbols.
    [[nodiscard]] std::string labelInWords() const;
    [[nodiscard]] bool canReset() const;

  private:
    void setRecording(ShortcutHandlerView::Recording recording);

    RecorderFields fields_;
    std::function<void()> onChange_;
    ShortcutHandlerView::Recording isRecording_ = ShortcutHandlerView::Recording::no;
    ShortcutHandlerView handlerView_;
};

}  // namespace shortcuts
