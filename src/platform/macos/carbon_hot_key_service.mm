#include "platform/macos/carbon_hot_key_service.h"

#import <Carbon/Carbon.h>

#include <bit>
#include <cstdint>
#include <utility>

#include "platform/macos/platform_constants.h"

namespace platform::macos {

namespace {

static_assert(hotKeySignature == 'BAR1');
static_assert(hotKeyEventClass == kEventClassKeyboard);
static_assert(hotKeyEventKind == kEventHotKeyPressed);
static_assert(hotKeyParameterName == kEventParamDirectObject);
static_assert(hotKeyParameterType == typeEventHotKeyID);
static_assert(hotKeyOptions == kEventHotKeyNoOptions);
static_assert(shortcuts::commandModifier == cmdKey);
static_assert(shortcuts::shiftModifier == shiftKey);
static_assert(shortcuts::optionModifier == optionKey);
static_assert(shortcuts::controlModifier == controlKey);
static_assert(shortcuts::noErr == ::noErr);
static_assert(shortcuts::eventHotKeyExistsErr == ::eventHotKeyExistsErr);
static_assert(sizeof(::EventHotKeyID) == 8);

struct Installed {
    ::EventHandlerRef ref = nullptr;
    shortcuts::HotKeyService::Handler handler;
};

/// Whoever is told of presses; the newest one, because the callback gets no user data.
Installed& installed() {
    static Installed newest;
    return newest;
}

/// Main thread.
::OSStatus handlePress(::EventHandlerCallRef /*caller*/, ::EventRef event, void* /*userData*/) {
    ::EventHotKeyID hotKeyID{};
    // Whether it could be read is not asked: a press without an identity is one with zeros.
    GetEventParameter(event, hotKeyParameterName, hotKeyParameterType, nullptr, sizeof(hotKeyID),
                      nullptr, &hotKeyID);
    // A copy: the handler may replace itself.
    const auto handler = installed().handler;
    return handler ? handler({hotKeyID.signature, hotKeyID.id}) : ::OSStatus{::noErr};
}

}  // namespace

CarbonHotKeyService::~CarbonHotKeyService() {
    installed() = {};
}

shortcuts::HotKeyService::Registration<shortcuts::HotKeyRef> CarbonHotKeyService::registerHotKey(
    std::uint32_t keyCode, std::uint32_t modifiers, shortcuts::EventHotKeyID hotKeyID) {
    ::EventHotKeyRef ref = nullptr;
    const ::OSStatus status =
        RegisterEventHotKey(keyCode, modifiers, {hotKeyID.signature, hotKeyID.id},
                            GetApplicationEventTarget(), hotKeyOptions, &ref);
    return {status, std::bit_cast<std::uint64_t>(ref)};
}

shortcuts::OSStatus CarbonHotKeyService::unregisterHotKey(shortcuts::HotKeyRef ref) {
    return UnregisterEventHotKey(std::bit_cast<::EventHotKeyRef>(ref));
}

shortcuts::HotKeyService::Registration<shortcuts::EventHandlerRef>
CarbonHotKeyService::installEventHandler(Handler handler) {
    const EventTypeSpec pressed{hotKeyEventClass, hotKeyEventKind};
    ::EventHandlerRef ref = nullptr;
    const ::OSStatus status =
        InstallEventHandler(GetApplicationEventTarget(), handlePress, 1, &pressed, nullptr, &ref);
    if (status == ::noErr) {
        installed() = {.ref = ref, .handler = std::move(handler)};
    }
    return {status, std::bit_cast<std::uint64_t>(ref)};
}

shortcuts::OSStatus CarbonHotKeyService::removeEventHandler(shortcuts::EventHandlerRef ref) {
    const auto installedRef = std::bit_cast<::EventHandlerRef>(ref);
    if (installed().ref == installedRef) {
        installed() = {};
    }
    return RemoveEventHandler(installedRef);
}

}  // namespace platform::macos
