#include "shortcuts/recorder_model.h"

#include <utility>

#include "shortcuts/shortcut_display.h"

namespace shortcuts {

using Recording = ShortcutHandlerView::Recording;

namespace {

constexpr const char* invitation = "Press Shortcut…";

}  // namespace

RecorderModel::RecorderModel(RecorderFields fields, KeyMonitor& keyMonitor,
                             std::function<void()> onChange)
    : fields_(std::move(fields)),
      onChange_(std::move(onChange)),
      handlerView_(keyMonitor,
                   {.get = [this] { return isRecording_; },
                    .set = [this](Recording recording) { setRecording(recording); }},
                   fields_.keyCode, fields_.modifiers) {}

void RecorderModel::toggle() {
    setRecording(isRecording() ? Recording::no : Recording::yes);
}

void RecorderModel::cancel() {
    if (isRecording()) {
        setRecording(Recording::no);
    }
}

void RecorderModel::reset() {
    if (fields_.resetAction) {
        fields_.resetAction();
    }
}

std::string RecorderModel::label() const {
    return isRecording() ? invitation
                         : shortcutDisplayString(fields_.keyCode.get(), fields_.modifiers.get());
}

std::string RecorderModel::labelInWords() const {
    return isRecording() ? invitation
                         : shortcutDisplayWords(fields_.keyCode.get(), fields_.modifiers.get());
}

bool RecorderModel::canReset() const {
    return fields_.resetAction && !fields_.isDefault();
}

void RecorderModel::setRecording(Recording recording) {
    isRecording_ = recording;
    handlerView_.update();
    onChange_();
}

}  // namespace shortcuts
