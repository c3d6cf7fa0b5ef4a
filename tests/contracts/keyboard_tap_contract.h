#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>

#include "overlay/keyboard_tap.h"

namespace contracts {

/// A keyboard tap together with the keyboard and the other programs around it.
class KeyboardTapWorld {
  public:
    virtual ~KeyboardTapWorld() = default;
    virtual overlay::KeyboardTap& tap() = 0;
    /// Presses and releases a key; who is to see it has seen it when this returns.
    virtual void press(std::uint32_t keyCode) = 0;
    /// Another program holds the keyboard, or lets it go.
    virtual void takeByOther() = 0;
    virtual void letGoByOther() = 0;
    /// Lets everything happen that is due within half a second.
    virtual void letTimePass() = 0;
};

using MakeKeyboardTapWorld = std::function<std::unique_ptr<KeyboardTapWorld>()>;

/// What every keyboard tap does, whatever is behind it.
class KeyboardTapContract : public testing::TestWithParam<MakeKeyboardTapWorld> {
  protected:
    std::unique_ptr<KeyboardTapWorld> world_ = GetParam()();
};

}  // namespace contracts
