#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "shortcuts/key_monitor.h"

namespace contracts {

/// A key monitor together with the keyboard and a window of this program with one control.
class KeyMonitorWorld {
  public:
    virtual ~KeyMonitorWorld() = default;
    virtual shortcuts::KeyMonitor& monitor() = 0;
    /// Presses and releases a key, alone or with command and shift held around it; who is to see it
    /// has seen it when this returns.
    virtual void press(std::uint32_t keyCode) = 0;
    virtual void pressWithCommandShift(std::uint32_t keyCode) = 0;
    virtual void pressLeftShiftAlone() = 0;
    /// The virtual key codes of the key-downs that reached the control since the last call, those
    /// of modifier keys not counted.
    virtual std::vector<std::uint32_t> takeReached() = 0;
    /// Another program gets the input, or this one.
    virtual void giveInputAway() = 0;
    virtual void takeInputBack() = 0;
};

using MakeKeyMonitorWorld = std::function<std::unique_ptr<KeyMonitorWorld>()>;

/// What every key monitor does, whatever is behind it.
class KeyMonitorContract : public testing::TestWithParam<MakeKeyMonitorWorld> {
  protected:
    std::unique_ptr<KeyMonitorWorld> world_ = GetParam()();
};

}  // namespace contracts
