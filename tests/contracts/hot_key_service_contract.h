#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>

#include "shortcuts/hot_key_service.h"

namespace contracts {

/// A hot-key service together with the keyboard and the other programs around it.
class HotKeyWorld {
  public:
    virtual ~HotKeyWorld() = default;
    virtual shortcuts::HotKeyService& service() = 0;
    /// Presses and releases the combination; the service has seen both when this returns.
    virtual void press(std::uint32_t keyCode, std::uint32_t modifiers) = 0;
    /// Another program takes the combination, or lets it go.
    virtual void takeByOther(std::uint32_t keyCode, std::uint32_t modifiers) = 0;
    virtual void letGoByOther(std::uint32_t keyCode, std::uint32_t modifiers) = 0;
    /// A virtual key code that this keyboard does not have.
    virtual std::uint32_t missingKey() = 0;
};

using MakeHotKeyWorld = std::function<std::unique_ptr<HotKeyWorld>()>;

/// What every hot-key service does, whatever is behind it.
class HotKeyServiceContract : public testing::TestWithParam<MakeHotKeyWorld> {
  protected:
    std::unique_ptr<HotKeyWorld> world_ = GetParam()();
};

}  // namespace contracts
