#include "shortcuts/shortcut_handler_view.h"

#include <array>
#include <utility>

#include "overlay/virtual_key_codes.h"
#include "shortcuts/hot_key_service.h"

namespace shortcuts {

namespace {

struct ModifierPair {
    std::uint32_t flag;
    std::uint32_t mask;
};

constexpr std::array<ModifierPair, 4> modifierPairs{{{commandFlag, commandModifier},
                                                     {shiftFlag, shiftModifier},
                                                     {optionFlag, optionModifier},
                                                     {controlFlag, controlModifier}}};

}  // namespace

std::int64_t ShortcutHandlerView::Coordinator::carbonModifiers(std::uint32_t modifierFlags) const {
    std::uint32_t modifiers = 0;
    for (const auto& [flag, mask] : modifierPairs) {
        if ((modifierFlags & flag) != 0) {
            modifiers |= mask;
        }
    }
    return modifiers;
}

ShortcutHandlerView::ShortcutHandlerView(KeyMonitor& keyMonitor, Binding<Recording> isRecording,
                                         Binding<std::int64_t> keyCode,
                                         Binding<std::int64_t> modifiers)
    : isRecording_(std::move(isRecording)),
      keyCode_(std::move(keyCode)),
      modifiers_(std::move(modifiers)),
      view_(keyMonitor) {}

void ShortcutHandlerView::update() {
    view_.setRecording(isRecording_.get(),
                       [this](const KeyEvent& event) { return onEvent(event); });
}

ShortcutNSView::Consumed ShortcutHandlerView::onEvent(const KeyEvent& event) {
    if (event.type != KeyEventType::keyDown) {
        return ShortcutNSView::Consumed::no;
    }
    if (event.keyCode != overlay::escapeKeyCode) {
        const std::int64_t modifiers = coordinator_.carbonModifiers(event.modifierFlags);
        keyCode_.set(event.keyCode);
        modifiers_.set(modifiers);
    }
    isRecording_.set(Recording::no);
    return ShortcutNSView::Consumed::yes;
}

}  // namespace shortcuts
