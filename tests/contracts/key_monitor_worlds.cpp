#include "contracts/key_monitor_contract.h"
#include "desktop/test_window.h"
#include "doubles/fake_key_monitor.h"
#include "platform/x11/key_map.h"
#include "platform/x11/monitored_window.h"

namespace contracts {
namespace {

using shortcuts::KeyVerdict;

class FakeKeyMonitorWorld final : public KeyMonitorWorld {
  public:
    shortcuts::KeyMonitor& monitor() override { return monitor_; }
    void press(std::uint32_t keyCode) override { press(keyCode, 0); }
    void pressWithCommandShift(std::uint32_t keyCode) override {
        press(keyCode, shortcuts::commandFlag | shortcuts::shiftFlag);
    }
    void pressLeftShiftAlone() override {
        constexpr std::uint32_t leftShift = 56;
        monitor_.changeFlags(leftShift, shortcuts::shiftFlag);
        monitor_.changeFlags(leftShift, 0);
    }
    std::vector<std::uint32_t> takeReached() override { return std::exchange(reached_, {}); }
    void giveInputAway() override { monitor_.hasInput = false; }
    void takeInputBack() override { monitor_.hasInput = true; }

  private:
    void press(std::uint32_t keyCode, std::uint32_t flags) {
        if (monitor_.press(keyCode, flags) == KeyVerdict::pass) {
            reached_.push_back(keyCode);
        }
    }

    doubles::FakeKeyMonitor monitor_;
    std::vector<std::uint32_t> reached_;
};

class X11KeyMonitorWorld final : public KeyMonitorWorld {
  public:
    shortcuts::KeyMonitor& monitor() override {
        window_.settle();
        return window_.monitor();
    }
    void press(std::uint32_t keyCode) override { chord({keycode(keyCode)}); }
    void pressWithCommandShift(std::uint32_t keyCode) override {
        chord({desktop::key::leftSuper, desktop::key::leftShift, keycode(keyCode)});
    }
    void pressLeftShiftAlone() override {
        // Apart: what is on is asked of the server.
        keyboard_.hands().press(desktop::key::leftShift);
        window_.settle();
        keyboard_.hands().release(desktop::key::leftShift);
        window_.settle();
    }
    std::vector<std::uint32_t> takeReached() override {
        std::vector<std::uint32_t> reached;
        for (const auto keycode : window_.takePresses()) {
            const auto code = platform::x11::virtualKeyCodeOf(keycode);
            if (code && !platform::x11::isModifierKey(*code)) {
                reached.push_back(*code);
            }
        }
        return reached;
    }
    void giveInputAway() override {
        other_.focus();
        window_.settle();
    }
    void takeInputBack() override { window_.takeFocus(); }

  private:
    static std::uint8_t keycode(std::uint32_t keyCode) {
        return platform::x11::keycodeOf(keyCode).value();
    }
    void chord(const std::vector<std::uint8_t>& keycodes) {
        keyboard_.hands().chord(keycodes);
        window_.settle();
    }

    test::PrivateKeyboard keyboard_;
    desktop::TestWindow other_{
        keyboard_.displayName(),
        {.x = 300, .width = 200, .management = desktop::TestWindowOptions::Management::unmanaged}};
    test::MonitoredWindow window_{keyboard_};
};

INSTANTIATE_TEST_SUITE_P(Fake, KeyMonitorContract, testing::Values(MakeKeyMonitorWorld([] {
                             return std::make_unique<FakeKeyMonitorWorld>();
                         })));
INSTANTIATE_TEST_SUITE_P(X11, KeyMonitorContract, testing::Values(MakeKeyMonitorWorld([] {
                             return std::make_unique<X11KeyMonitorWorld>();
                         })));

}  // namespace
}  // namespace contracts
