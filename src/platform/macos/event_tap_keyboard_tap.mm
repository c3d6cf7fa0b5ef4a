#include "platform/macos/event_tap_keyboard_tap.h"

#import <CoreFoundation/CoreFoundation.h>
#import <CoreGraphics/CoreGraphics.h>

#include <cstdint>
#include <utility>

#include "platform/macos/platform_constants.h"

namespace platform::macos {

namespace {

static_assert(tapLocation == kCGSessionEventTap);
static_assert(tapPlacement == kCGHeadInsertEventTap);
static_assert(tapOptions == kCGEventTapOptionDefault);
static_assert(tapEventMask == CGEventMaskBit(kCGEventKeyDown));

struct Deciding {
    CFMachPortRef port = nullptr;
    overlay::KeyboardTap::Handler handler;
};

/// The newest tap decides; one, because the callback gets no user data.
Deciding& deciding() {
    static Deciding newest;
    return newest;
}

/// Main thread, by the tap's source. Null swallows the event.
CGEventRef handleTapEvent(CGEventTapProxy /*proxy*/, CGEventType type, CGEventRef event,
                          void* /*userInfo*/) {
    overlay::TapEvent tapEvent{.type = overlay::TapEventType::tapDisabled};
    if (type == kCGEventKeyDown) {
        const std::int64_t keyCode = CGEventGetIntegerValueField(event, kCGKeyboardEventKeycode);
        tapEvent = {.type = overlay::TapEventType::keyDown,
                    .keyCode = static_cast<std::uint32_t>(keyCode)};
    }
    // A copy: the handler may take the tap down.
    const auto handler = deciding().handler;
    const bool isSwallowed = handler && handler(tapEvent) == overlay::TapVerdict::swallow;
    return isSwallowed ? nullptr : event;
}

class InstalledTap final : public overlay::EventTap {
  public:
    // Main thread, as every method here.
    /// Takes over one reference of the port.
    InstalledTap(CFMachPortRef port, overlay::KeyboardTap::Handler handler)
        : port_(port), source_(CFMachPortCreateRunLoopSource(kCFAllocatorDefault, port, 0)) {
        deciding() = {.port = port, .handler = std::move(handler)};
        if (source_ != nullptr) {
            CFRunLoopAddSource(CFRunLoopGetMain(), source_, kCFRunLoopCommonModes);
        }
        CGEventTapEnable(port_, true);
    }
    ~InstalledTap() override {
        if (deciding().port == port_) {
            deciding() = {};
        }
        CGEventTapEnable(port_, false);
        CFMachPortInvalidate(port_);
        CFRelease(port_);
        if (source_ != nullptr) {
            CFRunLoopRemoveSource(CFRunLoopGetMain(), source_, kCFRunLoopCommonModes);
            CFRelease(source_);
        }
    }
    InstalledTap(const InstalledTap&) = delete;
    InstalledTap& operator=(const InstalledTap&) = delete;

  private:
    CFMachPortRef port_;
    CFRunLoopSourceRef source_;
};

}  // namespace

base::Result<std::unique_ptr<overlay::EventTap>> EventTapKeyboardTap::create(Handler handler) {
    const CFMachPortRef port = CGEventTapCreate(static_cast<CGEventTapLocation>(tapLocation),
                                                static_cast<CGEventTapPlacement>(tapPlacement),
                                                static_cast<CGEventTapOptions>(tapOptions),
                                                tapEventMask, handleTapEvent, nullptr);
    if (port == nullptr) {
        return base::Error{base::ErrorKind::notPermitted,
                           "The system refuses an event tap without Accessibility access."};
    }
    return std::unique_ptr<overlay::EventTap>(
        std::make_unique<InstalledTap>(port, std::move(handler)));
}

void EventTapKeyboardTap::whenAvailable(std::chrono::milliseconds /*limit*/,
                                        std::function<void()> ready) {
    mainQueue_.post(std::move(ready));
}

}  // namespace platform::macos
