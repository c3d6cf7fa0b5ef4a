#pragma once

#include <algorithm>
#include <chrono>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "doubles/call_log.h"
#include "overlay/keyboard_tap.h"

namespace doubles {

/// A keyboard whose presses go to the tap installed last, and to the one before when it lets them
/// pass. In a call log: "tap create", "tap remove". Must outlive its taps.
class FakeKeyboardTap final : public overlay::KeyboardTap, public Recorder {
  public:
    base::Result<std::unique_ptr<overlay::EventTap>> create(Handler handler) override {
        record("tap create");
        ++createCount;
        if (createError) {
            return *createError;
        }
        return std::unique_ptr<overlay::EventTap>(std::make_unique<Tap>(*this, std::move(handler)));
    }
    void whenAvailable(std::chrono::milliseconds limit, std::function<void()> ready) override {
        waits.push_back({limit, std::move(ready)});
    }

    /// What became of a key-down; none when no tap is installed.
    std::optional<overlay::TapVerdict> press(std::uint32_t keyCode) {
        return send({overlay::TapEventType::keyDown, keyCode});
    }
    std::optional<overlay::TapVerdict> send(const overlay::TapEvent& event) {
        if (taps_.empty()) {
            return std::nullopt;
        }
        // Copies: a handler may end its own tap, or another one, or install a new one.
        const std::list<std::shared_ptr<const Handler>> asked = taps_;
        for (auto handler = asked.rbegin(); handler != asked.rend(); ++handler) {
            const bool isInstalled = std::find(taps_.begin(), taps_.end(), *handler) != taps_.end();
            if (isInstalled && (**handler)(event) == overlay::TapVerdict::swallow) {
                return overlay::TapVerdict::swallow;
            }
        }
        return overlay::TapVerdict::pass;
    }
    /// Ends every wait for the keyboard: it is free, or the limit has passed.
    void endWaits() {
        for (Wait& wait : std::exchange(waits, {})) {
            wait.ready();
        }
    }
    [[nodiscard]] std::size_t installedCount() const { return taps_.size(); }

    struct Wait {
        std::chrono::milliseconds limit;
        std::function<void()> ready;
    };
    std::optional<base::Error> createError;
    std::vector<Wait> waits;
    int createCount = 0;

  private:
    class Tap final : public overlay::EventTap {
      public:
        Tap(FakeKeyboardTap& keyboard, Handler handler)
            : keyboard_(keyboard), handler_(std::make_shared<const Handler>(std::move(handler))) {
            keyboard_.taps_.push_back(handler_);
        }
        Tap(const Tap&) = delete;
        Tap& operator=(const Tap&) = delete;
        ~Tap() override {
            keyboard_.taps_.remove(handler_);
            keyboard_.record("tap remove");
        }

      private:
        FakeKeyboardTap& keyboard_;
        std::shared_ptr<const Handler> handler_;
    };

    std::list<std::shared_ptr<const Handler>> taps_;
};

}  // namespace doubles
