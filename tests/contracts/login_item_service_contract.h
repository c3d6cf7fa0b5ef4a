#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "ui/login_item_service.h"

namespace contracts {

/// A login-item service together with what lies behind it.
class LoginItemServiceWorld {
  public:
    virtual ~LoginItemServiceWorld() = default;
    virtual ui::LoginItemService& service() = 0;
    /// The user switches the registered item off in the system's own settings.
    virtual void switchOffElsewhere() = 0;
    /// From now on nothing can be changed.
    virtual void breakMedium() = 0;
};

using MakeLoginItemServiceWorld = std::function<std::unique_ptr<LoginItemServiceWorld>()>;

/// What every login-item service does, whatever is behind it.
class LoginItemServiceContract : public testing::TestWithParam<MakeLoginItemServiceWorld> {
  protected:
    [[nodiscard]] ui::LoginItemService& service() const { return world_->service(); }

    std::unique_ptr<LoginItemServiceWorld> world_ = GetParam()();
};

}  // namespace contracts
