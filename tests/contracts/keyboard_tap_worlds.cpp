#include "contracts/keyboard_tap_contract.h"
#include "doubles/fake_keyboard_tap.h"
#include "platform/x11/key_map.h"
#include "platform/x11/private_keyboard.h"

namespace contracts {
namespace {

using namespace std::chrono_literals;

class FakeKeyboardTapWorld final : public KeyboardTapWorld {
  public:
    overlay::KeyboardTap& tap() override { return tap_; }
    void press(std::uint32_t keyCode) override { tap_.press(keyCode); }
    void takeByOther() override {
        tap_.createError = base::Error{base::ErrorKind::unavailable, "Somebody else has it."};
    }
    void letGoByOther() override { tap_.createError.reset(); }
    void letTimePass() override { tap_.endWaits(); }

  private:
    doubles::FakeKeyboardTap tap_;
};

class X11KeyboardTapWorld final : public KeyboardTapWorld {
  public:
    overlay::KeyboardTap& tap() override { return keyboard_.tap(); }
    void press(std::uint32_t keyCode) override {
        keyboard_.hands().tap(platform::x11::keycodeOf(keyCode).value());
        keyboard_.settle();
    }
    void takeByOther() override {
        ASSERT_EQ(other_.grabKeyboard(), test::OtherProgram::Answer::granted);
    }
    void letGoByOther() override { other_.ungrabKeyboard(); }
    void letTimePass() override { keyboard_.queue().advance(500ms); }

  private:
    test::PrivateKeyboard keyboard_;
    test::OtherProgram other_{keyboard_.displayName()};
};

INSTANTIATE_TEST_SUITE_P(Fake, KeyboardTapContract, testing::Values(MakeKeyboardTapWorld([] {
                             return std::make_unique<FakeKeyboardTapWorld>();
                         })));
INSTANTIATE_TEST_SUITE_P(X11, KeyboardTapContract, testing::Values(MakeKeyboardTapWorld([] {
                             return std::make_unique<X11KeyboardTapWorld>();
                         })));

}  // namespace
}  // namespace contracts
