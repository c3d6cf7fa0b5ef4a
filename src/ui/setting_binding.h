#pragma once

#include <functional>
#include <string>
#include <utility>

#include "app/settings_store.h"

namespace ui {

/// A control's two ways to one stored setting: a value that is set is stored at once, and a change
/// in the store is told. Nothing is kept here. Main thread.
template <typename Value>
class SettingBinding {
  public:
    /// `key` has static storage. `fallback` is shown as long as nothing is stored or registered
    /// under the key. `settings` outlives the object.
    SettingBinding(app::SettingsStore& settings, const char* key, Value fallback)
        : settings_(&settings), key_(key), fallback_(std::move(fallback)) {}

    [[nodiscard]] const char* key() const { return key_; }
    [[nodiscard]] Value value() const {
        return settings_->effectiveValue<Value>(key_).value_or(fallback_);
    }
    void set(bool value) const requires std::same_as<Value, bool> {
        settings_->setBool(key_, value);
    }
    void set(const std::string& value) const requires std::same_as<Value, std::string> {
        settings_->setString(key_, value);
    }
    /// Calls `observer` after each write of the setting, by this program or another one.
    [[nodiscard]] app::SettingsStore::Observation observe(std::function<void()> observer) const {
        return settings_->observe(key_, std::move(observer));
    }

  private:
    app::SettingsStore* settings_;
    const char* key_;
    Value fallback_;
};

}  // namespace ui
