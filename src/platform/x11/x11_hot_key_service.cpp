#include "platform/x11/x11_hot_key_service.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "platform/x11/key_map.h"

namespace platform::x11 {

namespace {

KeyGrab grabOf(const ModifierMap& map, xcb_keycode_t keycode, ModifierMask mask) {
    return {keycode, lockVariantsOf(map, mask)};
}

shortcuts::OSStatus statusOf(GrabOutcome outcome) {
    switch (outcome) {
        case GrabOutcome::grabbed:
            return shortcuts::noErr;
        case GrabOutcome::taken:
            return shortcuts::eventHotKeyExistsErr;
        case GrabOutcome::refused:
            break;
    }
    return shortcuts::paramErr;
}

}  // namespace

X11HotKeyService::X11HotKeyService(Connection& connection, KeyboardMapping& mapping,
                                   KeyRouter& router, base::MainQueue& mainQueue)
    : connection_(connection),
      mapping_(mapping),
      router_(router),
      mainQueue_(mainQueue),
      grabbedWith_(mapping.modifiers()) {
    router_.onHotKey([this](shortcuts::EventHotKeyID hotKeyID) { report(hotKeyID); });
    mapping_.onChange([this] { grabAnew(); });
}

X11HotKeyService::~X11HotKeyService() {
    mapping_.onChange({});
    router_.onHotKey({});
    while (!router_.hotKeys().entries().empty()) {
        unregisterHotKey(router_.hotKeys().entries().begin()->first);
    }
    giveBack();
}

X11HotKeyService::Registration<shortcuts::HotKeyRef> X11HotKeyService::registerHotKey(
    std::uint32_t keyCode, std::uint32_t modifiers, shortcuts::EventHotKeyID hotKeyID) {
    const auto keycode = keycodeOf(keyCode);
    const auto mask = modifierMaskOf(grabbedWith_, modifiers);
    if (!keycode || !mapping_.hasKeycode(*keycode) || !mask) {
        return {shortcuts::paramErr, 0};
    }
    if (router_.hotKeys().contains(*keycode, *mask)) {
        return {shortcuts::eventHotKeyExistsErr, 0};
    }
    const auto status = statusOf(take(grabOf(grabbedWith_, *keycode, *mask)));
    if (status != shortcuts::noErr) {
        return {status, 0};
    }
    return {shortcuts::noErr, router_.hotKeys().add({hotKeyID, *keycode, modifiers, mask})};
}

shortcuts::OSStatus X11HotKeyService::unregisterHotKey(shortcuts::HotKeyRef ref) {
    const auto hotKey = router_.hotKeys().remove(ref);
    if (!hotKey) {
        return shortcuts::paramErr;
    }
    if (hotKey->mask) {
        giveBackLater(grabOf(grabbedWith_, hotKey->keycode, *hotKey->mask));
    }
    return shortcuts::noErr;
}

GrabOutcome X11HotKeyService::take(const KeyGrab& grab) {
    const auto kept = std::ranges::find(leaving_, grab);
    if (kept == leaving_.end()) {
        return grabKey(connection_, grab);
    }
    leaving_.erase(kept);
    return connection_.isLost() ? GrabOutcome::refused : GrabOutcome::grabbed;
}

void X11HotKeyService::giveBackLater(KeyGrab grab) {
    if (leaving_.empty()) {
        mainQueue_.post(alive_.guard([this] { giveBack(); }));
    }
    leaving_.push_back(std::move(grab));
}

void X11HotKeyService::giveBack() {
    for (const KeyGrab& grab : std::exchange(leaving_, {})) {
        ungrabKey(connection_, grab);
    }
}

X11HotKeyService::Registration<shortcuts::EventHandlerRef> X11HotKeyService::installEventHandler(
    Handler handler) {
    if (!handler) {
        return {shortcuts::paramErr, 0};
    }
    handlers_.emplace(++lastHandler_, std::move(handler));
    return {shortcuts::noErr, lastHandler_};
}

shortcuts::OSStatus X11HotKeyService::removeEventHandler(shortcuts::EventHandlerRef ref) {
    return handlers_.erase(ref) == 1 ? shortcuts::noErr : shortcuts::paramErr;
}

void X11HotKeyService::report(shortcuts::EventHotKeyID hotKeyID) {
    // The newest handler first, until one has handled the press; by number and with a copy, since a
    // handler may remove any of them.
    std::vector<shortcuts::EventHandlerRef> newestFirst;
    for (const auto& [ref, handler] : handlers_) {
        newestFirst.push_back(ref);
    }
    for (const auto ref : newestFirst) {
        const auto entry = handlers_.find(ref);
        if (entry == handlers_.end()) {
            continue;
        }
        const Handler handler = entry->second;
        if (handler(hotKeyID) == shortcuts::noErr) {
            return;
        }
    }
}

void X11HotKeyService::grabAnew() {
    giveBack();
    auto& hotKeys = router_.hotKeys().entries();
    for (auto& [ref, hotKey] : hotKeys) {
        if (hotKey.mask) {
            ungrabKey(connection_, grabOf(grabbedWith_, hotKey.keycode, *hotKey.mask));
            hotKey.mask.reset();
        }
    }
    grabbedWith_ = mapping_.modifiers();
    for (auto& [ref, hotKey] : hotKeys) {
        const auto mask = modifierMaskOf(grabbedWith_, hotKey.modifiers);
        if (!mask || router_.hotKeys().contains(hotKey.keycode, *mask)) {
            continue;
        }
        // What cannot be grabbed now stays registered, for the next change to bring it back.
        if (grabKey(connection_, grabOf(grabbedWith_, hotKey.keycode, *mask)) ==
            GrabOutcome::grabbed) {
            hotKey.mask = mask;
        }
    }
}

}  // namespace platform::x11
