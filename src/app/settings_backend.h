#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <variant>

#include "base/result.h"

namespace app {

/// A stored value. Readers that expect another type treat it as absent.
using SettingsValue = std::variant<bool, std::int64_t, std::string>;

/// The persistent part of the settings: named values, nothing else. Main thread.
class SettingsBackend {
  public:
    virtual ~SettingsBackend() = default;
    /// No value when the key was never written, or holds something that is no SettingsValue.
    [[nodiscard]] virtual std::optional<SettingsValue> read(const std::string& key) = 0;
    /// Persistent when it returns; the value is readable in this process even when that failed.
    virtual base::Status write(const std::string& key, const SettingsValue& value) = 0;
    /// Calls `handler` on the main thread with the key after another program changed a value.
    /// One handler; an empty one ends the calls.
    virtual void setChangeHandler(std::function<void(const std::string& key)> handler) = 0;
};

}  // namespace app
