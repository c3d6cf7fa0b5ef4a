#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "app/settings_backend.h"

namespace contracts {

/// A settings back end together with the medium and the other programs around it.
class SettingsBackendWorld {
  public:
    virtual ~SettingsBackendWorld() = default;
    virtual app::SettingsBackend& backend() = 0;
    /// Another program writes a Bool, or deletes the key; what this process is told of it has been
    /// told when this returns.
    virtual void changeFromOutside(const std::string& key, std::optional<bool> value) = 0;
    /// The medium takes nothing any more.
    virtual void breakMedium() = 0;
};

using MakeSettingsBackendWorld = std::function<std::unique_ptr<SettingsBackendWorld>()>;

/// What every settings back end does, whatever is behind it.
class SettingsBackendContract : public testing::TestWithParam<MakeSettingsBackendWorld> {
  protected:
    std::unique_ptr<SettingsBackendWorld> world_ = GetParam()();
    app::SettingsBackend& backend_ = world_->backend();
};

}  // namespace contracts
