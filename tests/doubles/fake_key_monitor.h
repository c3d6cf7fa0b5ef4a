#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <utility>

#include "doubles/call_log.h"
#include "shortcuts/key_monitor.h"

namespace doubles {

/// A program with the input, whose keys go to the monitors first. In a call log: "monitor install",
/// "monitor remove". Must outlive its monitors.
class FakeKeyMonitor final : public shortcuts::KeyMonitor, public Recorder {
  public:
    [[nodiscard]] std::unique_ptr<shortcuts::InstalledKeyMonitor> install(
        Handler handler) override {
        record("monitor install");
        ++installCount;
        return std::make_unique<Monitor>(*this, std::move(handler));
    }

    /// What became of a key-down; it passes when no monitor is installed.
    shortcuts::KeyVerdict press(std::uint32_t keyCode, std::uint32_t modifierFlags = 0) {
        return send({shortcuts::KeyEventType::keyDown, keyCode, modifierFlags});
    }
    shortcuts::KeyVerdict changeFlags(std::uint32_t keyCode, std::uint32_t modifierFlags) {
        return send({shortcuts::KeyEventType::flagsChanged, keyCode, modifierFlags});
    }
    shortcuts::KeyVerdict send(const shortcuts::KeyEvent& event) {
        if (!hasInput) {
            return shortcuts::KeyVerdict::pass;
        }
        // Copies: a handler may end its own monitor, or another one, or install a new one.
        const std::list<std::shared_ptr<const Handler>> asked = monitors_;
        for (auto handler = asked.rbegin(); handler != asked.rend(); ++handler) {
            const bool isInstalled = std::ranges::find(monitors_, *handler) != monitors_.end();
            if (isInstalled && (**handler)(event) == shortcuts::KeyVerdict::swallow) {
                return shortcuts::KeyVerdict::swallow;
            }
        }
        return shortcuts::KeyVerdict::pass;
    }
    [[nodiscard]] std::size_t installedCount() const { return monitors_.size(); }

    /// Whether a window of this program has the input.
    bool hasInput = true;
    int installCount = 0;

  private:
    class Monitor final : public shortcuts::InstalledKeyMonitor {
      public:
        Monitor(FakeKeyMonitor& keyboard, Handler handler)
            : keyboard_(keyboard), handler_(std::make_shared<const Handler>(std::move(handler))) {
            keyboard_.monitors_.push_back(handler_);
        }
        Monitor(const Monitor&) = delete;
        Monitor& operator=(const Monitor&) = delete;
        ~Monitor() override {
            keyboard_.monitors_.remove(handler_);
            keyboard_.record("monitor remove");
        }

      private:
        FakeKeyMonitor& keyboard_;
        std::shared_ptr<const Handler> handler_;
    };

    std::list<std::shared_ptr<const Handler>> monitors_;
};

}  // namespace doubles
