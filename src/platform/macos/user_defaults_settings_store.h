#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "app/settings_backend.h"
#include "base/alive.h"

namespace platform::macos {

/// The settings in the user's defaults, the standard instance. Registered defaults are the store's
/// above this; the system's registration domain stays empty.
class UserDefaultsSettingsStore final : public app::SettingsBackend {
  public:
    // Main thread, as every method here.
    UserDefaultsSettingsStore();
    ~UserDefaultsSettingsStore() override;
    UserDefaultsSettingsStore(const UserDefaultsSettingsStore&) = delete;
    UserDefaultsSettingsStore& operator=(const UserDefaultsSettingsStore&) = delete;

    [[nodiscard]] std::optional<app::SettingsValue> read(const std::string& key) override;
    /// Succeeds always: the system persists by itself.
    base::Status write(const std::string& key, const app::SettingsValue& value) override;
    /// Tells of keys that were read or written before: nobody else waits for a change.
    void setChangeHandler(std::function<void(const std::string& key)> handler) override;

  private:
    struct Observer;

    void observe(const std::string& key);
    void noteChange(const std::string& key);

    std::function<void(const std::string& key)> changeHandler_;
    /// What each observed key held when it was last told of or written here.
    std::map<std::string, std::optional<app::SettingsValue>> known_;
    base::Alive alive_;
    std::unique_ptr<Observer> observer_;
};

}  // namespace platform::macos
