#pragma once

#include <functional>
#include <memory>

#include "shortcuts/key_monitor.h"

namespace shortcuts {

/// Owns the keyboard monitor of one recorder: installed while it records, at most once, and removed
/// with this object. Main thread.
class ShortcutNSView {
  public:
    /// Whether the event was consumed.
    enum class Consumed { no, yes };
    using OnEvent = std::function<Consumed(const KeyEvent&)>;
    enum class Recording { no, yes };

    /// `keyMonitor` must outlive the object.
    explicit ShortcutNSView(KeyMonitor& keyMonitor) : keyMonitor_(keyMonitor) {}
    ShortcutNSView(const ShortcutNSView&) = delete;
    ShortcutNSView& operator=(const ShortcutNSView&) = delete;

    /// Asked at every update: events go to `onEvent` from here on while `recording` is yes. May be
    /// called by `onEvent` itself.
    void setRecording(Recording recording, OnEvent onEvent);

  private:
    KeyVerdict handle(const KeyEvent& event) const;

    KeyMonitor& keyMonitor_;
    Recording isRecording_ = Recording::no;
    OnEvent onEvent_;
    std::unique_ptr<InstalledKeyMonitor> monitor_;
};

}  // namespace shortcuts
