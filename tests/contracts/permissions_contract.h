#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "base/permissions.h"

namespace contracts {

/// A session, and what it does to the program.
class PermissionsWorld {
  public:
    virtual ~PermissionsWorld() = default;
    virtual base::Permissions& permissions() = 0;
    /// Another program takes every key, or gives them back.
    virtual void holdEveryKey() = 0;
    virtual void letKeysGo() = 0;
    /// From here on the session lets the program have neither the screen nor the keys.
    virtual void distrust() = 0;
    /// How often a page has been opened for the user.
    virtual std::size_t openedCount() = 0;
};

using MakePermissionsWorld = std::function<std::unique_ptr<PermissionsWorld>()>;

/// What every session says of its permissions, whatever it is.
class PermissionsContract : public testing::TestWithParam<MakePermissionsWorld> {
  protected:
    std::unique_ptr<PermissionsWorld> world_ = GetParam()();
    base::Permissions& permissions_ = world_->permissions();
};

}  // namespace contracts
