#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "doubles/call_log.h"
#include "shortcuts/hot_key_service.h"

namespace doubles {

/// A keyboard with hot keys. A combination can be registered once; some may belong to another
/// program, some keys may not exist. In a call log: "register: <key>/<modifiers> id <id>",
/// "unregister: <ref>", "install handler", "remove handler: <ref>".
class FakeHotKeyService final : public shortcuts::HotKeyService, public Recorder {
  public:
    using Combination = std::pair<std::uint32_t, std::uint32_t>;
    struct HotKey {
        Combination combination;
        shortcuts::EventHotKeyID hotKeyID;
    };

    Registration<shortcuts::HotKeyRef> registerHotKey(std::uint32_t keyCode,
                                                      std::uint32_t modifiers,
                                                      shortcuts::EventHotKeyID hotKeyID) override {
        record("register: " + std::to_string(keyCode) + "/" + std::to_string(modifiers) + " id " +
               std::to_string(hotKeyID.id));
        ++registerCount;
        const Combination combination{keyCode, modifiers};
        if (unmappableKeys.contains(keyCode)) {
            return {shortcuts::paramErr, 0};
        }
        if (takenByOthers.contains(combination) || isRegistered(combination)) {
            return {shortcuts::eventHotKeyExistsErr, 0};
        }
        hotKeys[++lastRef_] = {combination, hotKeyID};
        return {shortcuts::noErr, lastRef_};
    }
    shortcuts::OSStatus unregisterHotKey(shortcuts::HotKeyRef ref) override {
        record("unregister: " + std::to_string(ref));
        return hotKeys.erase(ref) == 1 ? shortcuts::noErr : shortcuts::paramErr;
    }
    Registration<shortcuts::EventHandlerRef> installEventHandler(Handler handler) override {
        record("install handler");
        if (installStatus != shortcuts::noErr) {
            return {installStatus, 0};
        }
        handlers[++lastRef_] = std::move(handler);
        return {shortcuts::noErr, lastRef_};
    }
    shortcuts::OSStatus removeEventHandler(shortcuts::EventHandlerRef ref) override {
        record("remove handler: " + std::to_string(ref));
        return handlers.erase(ref) == 1 ? shortcuts::noErr : shortcuts::paramErr;
    }

    /// Presses a combination; the handler's answer, none when nobody was asked.
    std::optional<shortcuts::OSStatus> press(std::uint32_t keyCode, std::uint32_t modifiers) {
        for (const auto& [ref, hotKey] : hotKeys) {
            if (hotKey.combination == Combination{keyCode, modifiers}) {
                return press(hotKey.hotKeyID);
            }
        }
        return std::nullopt;
    }
    /// Hands an event with any identity to the handler installed last.
    std::optional<shortcuts::OSStatus> press(shortcuts::EventHotKeyID hotKeyID) {
        if (handlers.empty()) {
            return std::nullopt;
        }
        const Handler handler = handlers.rbegin()->second;
        return handler(hotKeyID);
    }

    [[nodiscard]] bool isRegistered(const Combination& combination) const {
        for (const auto& [ref, hotKey] : hotKeys) {
            if (hotKey.combination == combination) {
                return true;
            }
        }
        return false;
    }

    std::map<shortcuts::HotKeyRef, HotKey> hotKeys;
    std::map<shortcuts::EventHandlerRef, Handler> handlers;
    std::set<Combination> takenByOthers;
    std::set<std::uint32_t> unmappableKeys;
    shortcuts::OSStatus installStatus = shortcuts::noErr;
    int registerCount = 0;

  private:
    std::uint64_t lastRef_ = 0;
};

}  // namespace doubles
