#include "shortcuts/shortcut_manager.h"

#include <chrono>
#include <limits>
#include <string>
#include <utility>
#include <variant>

#include "app/settings_keys.h"

namespace shortcuts {

namespace {

constexpr const char* willChange = "ShortcutManagerWillChange";
constexpr auto firstRegistrationDelay = std::chrono::milliseconds(200);
constexpr auto activationRegistrationDelay = std::chrono::milliseconds(100);
constexpr std::int64_t defaultScreenshotKeyCode = 18;

std::optional<ShortcutManager::Mediator>& sharedMediator() {
    static std::optional<ShortcutManager::Mediator> mediator;
    return mediator;
}

std::uint32_t unsigned32(std::int64_t value) {
    if (value < 0 || value > std::numeric_limits<std::uint32_t>::max()) {
        base::fatalError("A stored shortcut holds the number " + std::to_string(value) +
                         ", which is no unsigned 32-bit number.");
    }
    return static_cast<std::uint32_t>(value);
}

/// The stored value when it is there and of the right type.
template <typename Value>
std::optional<Value> stored(const app::SettingsStore& settings, const char* key) {
    const std::optional<app::SettingsValue> value = settings.objectForKey(key);
    const Value* typed = value ? std::get_if<Value>(&*value) : nullptr;
    return typed != nullptr ? std::optional(*typed) : std::nullopt;
}

void store(app::SettingsStore& settings, const char* key, bool value) {
    settings.setBool(key, value);
}

void store(app::SettingsStore& settings, const char* key, std::int64_t value) {
    settings.setInteger(key, value);
}

}  // namespace

void ShortcutManager::provideShared(Mediator mediator) {
    sharedMediator().emplace(std::move(mediator));
}

ShortcutManager& ShortcutManager::shared() {
    // Never destroyed: the ports that it refers to may be gone when static objects are.
    static auto* const instance = [] {
        if (!sharedMediator()) {
            base::fatalError("The hot-key manager was asked for before the program was composed.");
        }
        return new ShortcutManager(*sharedMediator());
    }();
    return *instance;
}

ShortcutManager::ShortcutManager(Mediator mediator) : mediator_(std::move(mediator)) {
    probeAccessibility();
    migrate();
    load();
    subscribeToActivation();
    mediator_.mainQueue.postAfter(firstRegistrationDelay,
                                  alive_.guard([this] { registerShortcuts(); }));
}

ShortcutManager::~ShortcutManager() {
    if (hotKeyRef4_) {
        mediator_.hotKeys.unregisterHotKey(*hotKeyRef4_);
    }
    if (hotKeyRef2_) {
        mediator_.hotKeys.unregisterHotKey(*hotKeyRef2_);
    }
    if (eventHandler_) {
        mediator_.hotKeys.removeEventHandler(*eventHandler_);
    }
}

void ShortcutManager::probeAccessibility() {
    if (!mediator_.permissions.isAccessibilityTrusted()) {
        mediator_.log.line("ℹ️ Accessibility not yet granted - skipping system prompt request");
    }
}

void ShortcutManager::migrate() {
    app::SettingsStore& settings = mediator_.settings;
    if (!settings.boolForKey(app::keys::shortcutsEnabledMigrationV1)) {
        mediator_.log.line("🔧 Migrating shortcuts: forcing both to enabled");
        settings.setBool(app::keys::useShortcutForScreenshot, true);
        settings.setBool(app::keys::useCmdShift2, true);
        settings.setBool(app::keys::shortcutsEnabledMigrationV1, true);
    }
    if (!settings.boolForKey(app::keys::shortcutsDefaultKeyMigrationV2)) {
        // The stored modifiers stay: a store with another combination keeps it, with the key "1".
        mediator_.log.line("🔧 Migrating screenshot shortcut: forcing to Cmd+Shift+1");
        settings.setInteger(app::keys::screenshotKeyCode, defaultScreenshotKeyCode);
        settings.setBool(app::keys::shortcutsDefaultKeyMigrationV2, true);
    }
}

void ShortcutManager::load() {
    const app::SettingsStore& settings = mediator_.settings;
    setEnabled(stored<bool>(settings, app::keys::useShortcutForScreenshot).value_or(true));
    setCmdShift2Enabled(stored<bool>(settings, app::keys::useCmdShift2).value_or(true));
    if (const auto code = stored<std::int64_t>(settings, app::keys::screenshotKeyCode)) {
        setScreenshotKeyCode(*code);
    }
    if (const auto mask = stored<std::int64_t>(settings, app::keys::screenshotModifiers)) {
        setScreenshotModifiers(*mask);
    }
    if (const auto code = stored<std::int64_t>(settings, app::keys::ocrKeyCode)) {
        setOcrKeyCode(*code);
    }
    if (const auto mask = stored<std::int64_t>(settings, app::keys::ocrModifiers)) {
        setOcrModifiers(*mask);
    }
}

void ShortcutManager::subscribeToActivation() {
    activation_ = mediator_.notifications.observe(
        app::applicationDidBecomeActiveNotification, alive_.guard([this] {
            if (hasRegisteredOnActivation_) {
                return;
            }
            mediator_.log.line(
                "🔄 App became active - re-registering shortcuts to ensure they work");
            hasRegisteredOnActivation_ = true;
            mediator_.mainQueue.postAfter(activationRegistrationDelay,
                                          alive_.guard([this] { registerShortcuts(); }));
        }));
}

template <typename Value>
void ShortcutManager::publish(Value& member, Value value, const char* key) {
    changes_.post(willChange);
    member = value;
    store(mediator_.settings, key, value);
    registerShortcuts();
}

void ShortcutManager::setEnabled(bool isEnabled) {
    publish(isEnabled_, isEnabled, app::keys::useShortcutForScreenshot);
}

void ShortcutManager::setCmdShift2Enabled(bool isEnabled) {
    publish(isCmdShift2Enabled_, isEnabled, app::keys::useCmdShift2);
}

void ShortcutManager::setScreenshotKeyCode(std::int64_t keyCode) {
    publish(screenshotKeyCode_, keyCode, app::keys::screenshotKeyCode);
}

void ShortcutManager::setScreenshotModifiers(std::int64_t modifiers) {
    publish(screenshotModifiers_, modifiers, app::keys::screenshotModifiers);
}

void ShortcutManager::setOcrKeyCode(std::int64_t keyCode) {
    publish(ocrKeyCode_, keyCode, app::keys::ocrKeyCode);
}

void ShortcutManager::setOcrModifiers(std::int64_t modifiers) {
    publish(ocrModifiers_, modifiers, app::keys::ocrModifiers);
}

app::NotificationCenter::Observation ShortcutManager::observeChanges(
    std::function<void()> observer) {
    return changes_.observe(willChange, std::move(observer));
}

void ShortcutManager::registerShortcuts() {
    unregisterShortcuts();
    const bool isScreenshotRegistered = isEnabled_ && registerScreenshotShortcut();
    const bool isOcrRegistered = isCmdShift2Enabled_ && registerOcrShortcut();
    if (!isScreenshotRegistered && !isOcrRegistered) {
        mediator_.log.line("ℹ️ No shortcuts registered, event handler not installed");
        return;
    }
    installEventHandler();
}

bool ShortcutManager::registerScreenshotShortcut() {
    const auto registration = mediator_.hotKeys.registerHotKey(
        unsigned32(screenshotKeyCode_), unsigned32(screenshotModifiers_),
        {hotKeySignature, screenshotHotKeyID});
    if (registration.status != noErr) {
        mediator_.log.line("❌ Failed to register screenshot shortcut. Status: " +
                           std::to_string(registration.status));
        mediator_.log.line("   This might be because Cmd+Shift+1 is already used by macOS.");
        return false;
    }
    hotKeyRef4_ = registration.ref;
    mediator_.log.line("✅ Screenshot shortcut registered successfully (keyCode: " +
                       std::to_string(screenshotKeyCode_) + ")");
    return true;
}

bool ShortcutManager::registerOcrShortcut() {
    const auto registration = mediator_.hotKeys.registerHotKey(
        unsigned32(ocrKeyCode_), unsigned32(ocrModifiers_), {hotKeySignature, ocrHotKeyID});
    if (registration.status != noErr) {
        mediator_.log.line("❌ Failed to register OCR shortcut. Status: " +
                           std::to_string(registration.status));
        return false;
    }
    hotKeyRef2_ = registration.ref;
    mediator_.log.line(
        "✅ OCR shortcut registered successfully (keyCode: " + std::to_string(ocrKeyCode_) + ")");
    return true;
}

void ShortcutManager::installEventHandler() {
    const auto installed = mediator_.hotKeys.installEventHandler(
        [this](EventHotKeyID hotKeyID) { return handleHotKeyEvent(hotKeyID); });
    if (installed.status != noErr) {
        mediator_.log.line("❌ Failed to install event handler. Status: " +
                           std::to_string(installed.status));
        return;
    }
    eventHandler_ = installed.ref;
    mediator_.log.line("✅ Event handler installed successfully");
}

void ShortcutManager::unregisterShortcuts() {
    if (const auto ref = std::exchange(hotKeyRef4_, std::nullopt)) {
        mediator_.hotKeys.unregisterHotKey(*ref);
    }
    if (const auto ref = std::exchange(hotKeyRef2_, std::nullopt)) {
        mediator_.hotKeys.unregisterHotKey(*ref);
    }
    if (const auto ref = std::exchange(eventHandler_, std::nullopt)) {
        mediator_.hotKeys.removeEventHandler(*ref);
    }
}

OSStatus ShortcutManager::handleHotKeyEvent(EventHotKeyID hotKeyID) {
    mediator_.log.line("🟡 HotKey event received! ID: " + std::to_string(hotKeyID.id));
    mediator_.mainQueue.post(alive_.guard([this, hotKeyID] { dispatchHotKey(hotKeyID); }));
    return noErr;
}

void ShortcutManager::dispatchHotKey(EventHotKeyID hotKeyID) {
    if (hotKeyID.id == ocrHotKeyID) {
        mediator_.log.line("🟡 Dispatching to handleCmdShift2()");
        handleCmdShift2();
    } else if (hotKeyID.id == screenshotHotKeyID) {
        mediator_.log.line("🟡 Dispatching to takeScreenshot()");
        takeScreenshot();
    }
}

void ShortcutManager::takeScreenshot() {
    mediator_.log.line("🔵 takeScreenshot() called - Cmd+Shift+1 was pressed");
    mediator_.showSelection(base::CaptureMode::screenshot);
    mediator_.log.line("🔵 showSelection() called");
}

void ShortcutManager::handleCmdShift2() {
    mediator_.log.line("Cmd+Shift+2 pressed - OCR Mode");
    mediator_.showSelection(base::CaptureMode::ocr);
}

}  // namespace shortcuts
