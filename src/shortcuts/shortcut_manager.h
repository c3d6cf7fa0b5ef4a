#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "app/notification_center.h"
#include "app/settings_store.h"
#include "base/alive.h"
#include "base/capture_mode.h"
#include "base/log.h"
#include "base/main_queue.h"
#include "base/permissions.h"
#include "shortcuts/hot_key_service.h"

namespace shortcuts {

/// "BAR1", the first character in the most significant byte.
inline constexpr std::uint32_t hotKeySignature = 0x42415231;
inline constexpr std::uint32_t screenshotHotKeyID = 1;
inline constexpr std::uint32_t ocrHotKeyID = 2;

/// Owns the two system-wide shortcuts: mirrors their settings, registers them and opens the overlay
/// when they are pressed. One per process, reached through `shared()`; tests build their own.
/// Main thread.
class ShortcutManager {
  public:
    /// What it needs of the outside; everything outlives it.
    struct Mediator {
        HotKeyService& hotKeys;
        app::SettingsStore& settings;
        app::NotificationCenter& notifications;
        base::Permissions& permissions;
        base::MainQueue& mainQueue;
        base::Log& log;
        /// Opens the overlay.
        std::function<void(base::CaptureMode)> showSelection;
    };

    /// Migrates old settings, loads the shortcuts and registers them; each value that is loaded is
    /// written back and registers anew.
    explicit ShortcutManager(Mediator mediator);
    ~ShortcutManager();
    ShortcutManager(const ShortcutManager&) = delete;
    ShortcutManager& operator=(const ShortcutManager&) = delete;

    /// The one instance of the process, built at the first access from what `provideShared` was
    /// given.
    static ShortcutManager& shared();
    /// Tells how the shared instance is built; called once, by the composition root.
    static void provideShared(Mediator mediator);

    [[nodiscard]] bool isEnabled() const { return isEnabled_; }
    [[nodiscard]] bool isCmdShift2Enabled() const { return isCmdShift2Enabled_; }
    [[nodiscard]] std::int64_t screenshotKeyCode() const { return screenshotKeyCode_; }
    [[nodiscard]] std::int64_t screenshotModifiers() const { return screenshotModifiers_; }
    [[nodiscard]] std::int64_t ocrKeyCode() const { return ocrKeyCode_; }
    [[nodiscard]] std::int64_t ocrModifiers() const { return ocrModifiers_; }

    // Every set stores the value, also one that did not change, and registers the hot keys anew.
    void setEnabled(bool isEnabled);
    void setCmdShift2Enabled(bool isEnabled);
    void setScreenshotKeyCode(std::int64_t keyCode);
    void setScreenshotModifiers(std::int64_t modifiers);
    void setOcrKeyCode(std::int64_t keyCode);
    void setOcrModifiers(std::int64_t modifiers);

    /// Calls `observer` before each change of one of the six values, as long as the result lives.
    [[nodiscard]] app::NotificationCenter::Observation observeChanges(
        std::function<void()> observer);

    /// Rebuilds the registrations from scratch. A key code or modifier mask that is no unsigned
    /// 32-bit number is a fatal error.
    void registerShortcuts();
    void unregisterShortcuts();

    /// A press of a hot key: dispatched in a later turn of the main queue.
    OSStatus handleHotKeyEvent(EventHotKeyID hotKeyID);

  private:
    void probeAccessibility();
    void migrate();
    void load();
    void subscribeToActivation();
    [[nodiscard]] bool registerScreenshotShortcut();
    [[nodiscard]] bool registerOcrShortcut();
    void installEventHandler();
    void dispatchHotKey(EventHotKeyID hotKeyID);
    void takeScreenshot();
    void handleCmdShift2();
    template <typename Value>
    void publish(Value& member, Value value, const char* key);

    Mediator mediator_;
    base::Alive alive_;
    app::NotificationCenter changes_;
    bool isEnabled_ = false;
    bool isCmdShift2Enabled_ = false;
    std::int64_t screenshotKeyCode_ = 18;
    std::int64_t screenshotModifiers_ = commandModifier | shiftModifier;
    std::int64_t ocrKeyCode_ = 19;
    std::int64_t ocrModifiers_ = commandModifier | shiftModifier;
    std::optional<EventHandlerRef> eventHandler_;
    std::optional<HotKeyRef> hotKeyRef4_;
    std::optional<HotKeyRef> hotKeyRef2_;
    bool hasRegisteredOnActivation_ = false;
    app::NotificationCenter::Observation activation_;
};

}  // namespace shortcuts
