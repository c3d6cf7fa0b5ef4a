#include "contracts/hot_key_service_contract.h"
#include "doubles/fake_hot_key_service.h"
#include "platform/x11/key_map.h"
#include "platform/x11/private_keyboard.h"

namespace contracts {
namespace {

constexpr std::uint32_t keyWithoutPosition = 52;

class FakeHotKeyWorld final : public HotKeyWorld {
  public:
    FakeHotKeyWorld() { service_.unmappableKeys = {keyWithoutPosition}; }
    shortcuts::HotKeyService& service() override { return service_; }
    void press(std::uint32_t keyCode, std::uint32_t modifiers) override {
        service_.press(keyCode, modifiers);
    }
    void takeByOther(std::uint32_t keyCode, std::uint32_t modifiers) override {
        service_.takenByOthers.insert({keyCode, modifiers});
    }
    void letGoByOther(std::uint32_t keyCode, std::uint32_t modifiers) override {
        service_.takenByOthers.erase({keyCode, modifiers});
    }
    std::uint32_t missingKey() override { return keyWithoutPosition; }

  private:
    doubles::FakeHotKeyService service_;
};

class X11HotKeyWorld final : public HotKeyWorld {
  public:
    shortcuts::HotKeyService& service() override { return keyboard_.hotKeys(); }
    void press(std::uint32_t keyCode, std::uint32_t modifiers) override {
        std::vector<std::uint8_t> chord;
        const std::pair<std::uint32_t, std::uint8_t> keys[] = {
            {shortcuts::commandModifier, desktop::key::leftSuper},
            {shortcuts::shiftModifier, desktop::key::leftShift},
            {shortcuts::optionModifier, desktop::key::leftAlt},
            {shortcuts::controlModifier, desktop::key::leftControl}};
        for (const auto& [modifier, key] : keys) {
            if ((modifiers & modifier) != 0) {
                chord.push_back(key);
            }
        }
        chord.push_back(platform::x11::keycodeOf(keyCode).value());
        keyboard_.hands().chord(chord);
        keyboard_.settle();
    }
    void takeByOther(std::uint32_t keyCode, std::uint32_t modifiers) override {
        ASSERT_EQ(other_.grabKey(platform::x11::keycodeOf(keyCode).value(), maskOf(modifiers)),
                  test::OtherProgram::Answer::granted);
    }
    void letGoByOther(std::uint32_t keyCode, std::uint32_t modifiers) override {
        other_.ungrabKey(platform::x11::keycodeOf(keyCode).value(), maskOf(modifiers));
    }
    std::uint32_t missingKey() override { return keyWithoutPosition; }

  private:
    /// The bits of the keyboard that every X server starts with: Super is Mod4, Alt is Mod1.
    static std::uint16_t maskOf(std::uint32_t modifiers) {
        const auto bit = [&](std::uint32_t modifier, unsigned mask) {
            return (modifiers & modifier) != 0 ? mask : 0U;
        };
        return static_cast<std::uint16_t>(bit(shortcuts::commandModifier, XCB_MOD_MASK_4) |
                                          bit(shortcuts::shiftModifier, XCB_MOD_MASK_SHIFT) |
                                          bit(shortcuts::optionModifier, XCB_MOD_MASK_1) |
                                          bit(shortcuts::controlModifier, XCB_MOD_MASK_CONTROL));
    }

    test::PrivateKeyboard keyboard_;
    test::OtherProgram other_{keyboard_.displayName()};
};

INSTANTIATE_TEST_SUITE_P(Fake, HotKeyServiceContract, testing::Values([] {
                             return std::unique_ptr<HotKeyWorld>(
                                 std::make_unique<FakeHotKeyWorld>());
                         }));
INSTANTIATE_TEST_SUITE_P(X11, HotKeyServiceContract, testing::Values([] {
                             return std::unique_ptr<HotKeyWorld>(
                                 std::make_unique<X11HotKeyWorld>());
                         }));

}  // namespace
}  // namespace contracts
