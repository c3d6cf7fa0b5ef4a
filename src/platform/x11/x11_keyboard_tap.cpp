#include "platform/x11/x11_keyboard_tap.h"

#include <algorithm>
#include <utility>

namespace platform::x11 {

namespace {

/// The keys of a desktop's own shortcut are held for tens of milliseconds.
constexpr std::chrono::milliseconds retryInterval{10};

class X11EventTap final : public overlay::EventTap {
  public:
    X11EventTap(base::MainQueue& mainQueue, const std::shared_ptr<KeyRouter*>& router,
                KeyRouter::TapID tap)
        : mainQueue_(mainQueue), router_(router), tap_(tap) {}
    ~X11EventTap() override {
        if (const auto router = router_.lock()) {
            (*router)->removeTap(tap_);
            mainQueue_.post([weakRouter = router_] {
                if (const auto later = weakRouter.lock()) {
                    (*later)->giveBackWithoutTaps();
                }
            });
        }
    }
    X11EventTap(const X11EventTap&) = delete;
    X11EventTap& operator=(const X11EventTap&) = delete;

  private:
    base::MainQueue& mainQueue_;
    std::weak_ptr<KeyRouter*> router_;
    KeyRouter::TapID tap_;
};

}  // namespace

X11KeyboardTap::X11KeyboardTap(KeyRouter& router, base::MainQueue& mainQueue)
    : mainQueue_(mainQueue), router_(std::make_shared<KeyRouter*>(&router)) {}

X11KeyboardTap::~X11KeyboardTap() = default;

base::Result<std::unique_ptr<overlay::EventTap>> X11KeyboardTap::create(Handler handler) {
    auto tap = (*router_)->addTap(std::move(handler));
    if (!tap) {
        if (onRefused_) {
            onRefused_();
        }
        return tap.error();
    }
    return std::unique_ptr<overlay::EventTap>(
        std::make_unique<X11EventTap>(mainQueue_, router_, tap.value()));
}

void X11KeyboardTap::whenAvailable(std::chrono::milliseconds limit, std::function<void()> ready) {
    // Never in this turn, also when the keyboard is free.
    mainQueue_.post([this, alive = std::weak_ptr(router_), limit, ready = std::move(ready)] {
        if (!alive.expired()) {
            tryAgain(limit, ready);
        }
    });
}

void X11KeyboardTap::tryAgain(std::chrono::milliseconds remaining, std::function<void()> ready) {
    if ((*router_)->isKeyboardAvailable() || remaining <= std::chrono::milliseconds::zero()) {
        ready();
        return;
    }
    const auto delay = std::min(retryInterval, remaining);
    mainQueue_.postAfter(
        delay, [this, alive = std::weak_ptr(router_), remaining, delay, ready = std::move(ready)] {
            if (!alive.expired()) {
                tryAgain(remaining - delay, ready);
            }
        });
}

}  // namespace platform::x11
