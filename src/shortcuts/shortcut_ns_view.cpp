#include "shortcuts/shortcut_ns_view.h"

#include <utility>

namespace shortcuts {

void ShortcutNSView::setRecording(Recording recording, OnEvent onEvent) {
    isRecording_ = recording;
    onEvent_ = std::move(onEvent);
    switch (recording) {
        case Recording::yes:
            if (!monitor_) {
                monitor_ =
                    keyMonitor_.install([this](const KeyEvent& event) { return handle(event); });
            }
            break;
        case Recording::no:
            monitor_.reset();
            break;
    }
}

KeyVerdict ShortcutNSView::handle(const KeyEvent& event) const {
    if (isRecording_ == Recording::no || !onEvent_) {
        return KeyVerdict::pass;
    }
    // A copy: the callback replaces itself when it changes what it is bound to.
    const OnEvent onEvent = onEvent_;
    return onEvent(event) == Consumed::yes ? KeyVerdict::swallow : KeyVerdict::pass;
}

}  // namespace shortcuts
