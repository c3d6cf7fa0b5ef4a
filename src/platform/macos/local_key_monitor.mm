#include "platform/macos/local_key_monitor.h"

#import <AppKit/AppKit.h>

#include <cstdint>
#include <utility>

#include "platform/macos/platform_constants.h"

namespace platform::macos {

namespace {

static_assert(recorderEventMask == (NSEventMaskKeyDown | NSEventMaskFlagsChanged));
static_assert(shortcuts::capsLockFlag == NSEventModifierFlagCapsLock);
static_assert(shortcuts::shiftFlag == NSEventModifierFlagShift);
static_assert(shortcuts::controlFlag == NSEventModifierFlagControl);
static_assert(shortcuts::optionFlag == NSEventModifierFlagOption);
static_assert(shortcuts::commandFlag == NSEventModifierFlagCommand);
static_assert(shortcuts::numericPadFlag == NSEventModifierFlagNumericPad);

shortcuts::KeyEvent keyEventFrom(NSEvent* event) {
    return {.type = event.type == NSEventTypeKeyDown ? shortcuts::KeyEventType::keyDown
                                                     : shortcuts::KeyEventType::flagsChanged,
            .keyCode = event.keyCode,
            .modifierFlags = static_cast<std::uint32_t>(event.modifierFlags)};
}

class InstalledLocalMonitor final : public shortcuts::InstalledKeyMonitor {
  public:
    // Main thread, as every method here.
    explicit InstalledLocalMonitor(shortcuts::KeyMonitor::Handler handler)
        // Shared: the handler may destroy this while it is being called.
        : handler_(std::make_shared<shortcuts::KeyMonitor::Handler>(std::move(handler))) {
        const std::weak_ptr<shortcuts::KeyMonitor::Handler> weakHandler = handler_;
        token_ = [NSEvent addLocalMonitorForEventsMatchingMask:recorderEventMask
                                                       handler:^NSEvent*(NSEvent* event) {
                                                         const auto called = weakHandler.lock();
                                                         const bool isSwallowed =
                                                             called &&
                                                             (*called)(keyEventFrom(event)) ==
                                                                 shortcuts::KeyVerdict::swallow;
                                                         return isSwallowed ? nil : event;
                                                       }];
    }
    ~InstalledLocalMonitor() override {
        if (token_ != nil) {
            [NSEvent removeMonitor:token_];
        }
    }
    InstalledLocalMonitor(const InstalledLocalMonitor&) = delete;
    InstalledLocalMonitor& operator=(const InstalledLocalMonitor&) = delete;

  private:
    std::shared_ptr<shortcuts::KeyMonitor::Handler> handler_;
    id token_ = nil;
};

}  // namespace

std::unique_ptr<shortcuts::InstalledKeyMonitor> LocalKeyMonitor::install(Handler handler) {
    return std::make_unique<InstalledLocalMonitor>(std::move(handler));
}

}  // namespace platform::macos
