#include "platform/macos/local_key_monitor.h"

#import <AppKit/AppKit.h>

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

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

using SharedHandler = std::shared_ptr<shortcuts::KeyMonitor::Handler>;

shortcuts::KeyEvent keyEventFrom(NSEvent* event) {
    return {.type = event.type == NSEventTypeKeyDown ? shortcuts::KeyEventType::keyDown
                                                     : shortcuts::KeyEventType::flagsChanged,
            .keyCode = event.keyCode,
            .modifierFlags = static_cast<std::uint32_t>(event.modifierFlags)};
}

}  // namespace

/// Main thread.
struct LocalKeyMonitor::Monitors : std::enable_shared_from_this<Monitors> {
    /// The newest last.
    std::vector<SharedHandler> handlers;
    id token = nil;

    void add(const SharedHandler& handler) {
        handlers.push_back(handler);
        if (token == nil) {
            const std::weak_ptr<Monitors> weakThis = weak_from_this();
            token = [NSEvent
                addLocalMonitorForEventsMatchingMask:recorderEventMask
                                             handler:^NSEvent*(NSEvent* event) {
                                               const auto self = weakThis.lock();
                                               return self && self->swallows(event) ? nil : event;
                                             }];
        }
    }
    void remove(const SharedHandler& handler) {
        std::erase(handlers, handler);
        if (handlers.empty() && token != nil) {
            [NSEvent removeMonitor:token];
            token = nil;
        }
    }
    bool swallows(NSEvent* event) {
        // A copy: a handler may remove any monitor, its own too.
        const std::vector<SharedHandler> asked = handlers;
        return std::any_of(asked.rbegin(), asked.rend(), [&](const SharedHandler& handler) {
            return std::find(handlers.begin(), handlers.end(), handler) != handlers.end() &&
                   (*handler)(keyEventFrom(event)) == shortcuts::KeyVerdict::swallow;
        });
    }
};

namespace {

class InstalledLocalMonitor final : public shortcuts::InstalledKeyMonitor {
  public:
    // Main thread, as every method here.
    explicit InstalledLocalMonitor(std::function<void()> remove) : remove_(std::move(remove)) {}
    ~InstalledLocalMonitor() override { remove_(); }
    InstalledLocalMonitor(const InstalledLocalMonitor&) = delete;
    InstalledLocalMonitor& operator=(const InstalledLocalMonitor&) = delete;

  private:
    std::function<void()> remove_;
};

}  // namespace

LocalKeyMonitor::LocalKeyMonitor() : monitors_(std::make_shared<Monitors>()) {}

LocalKeyMonitor::~LocalKeyMonitor() = default;

std::unique_ptr<shortcuts::InstalledKeyMonitor> LocalKeyMonitor::install(Handler handler) {
    const auto shared = std::make_shared<Handler>(std::move(handler));
    monitors_->add(shared);
    return std::make_unique<InstalledLocalMonitor>(
        [monitors = monitors_, shared] { monitors->remove(shared); });
}

}  // namespace platform::macos
