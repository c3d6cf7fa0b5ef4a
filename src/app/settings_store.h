#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/notification_center.h"
#include "app/settings_backend.h"

namespace app {

/// The settings of the program: what is stored, and below it what was registered at this launch.
///
/// Everybody reads by key at the moment of use; nothing is cached here. Main thread.
class SettingsStore {
  public:
    using Defaults = std::vector<std::pair<std::string, SettingsValue>>;
    /// Ends when it is destroyed; may outlive the store.
    using Observation = NotificationCenter::Observation;

    /// `backend` must outlive the store, which takes its change handler.
    explicit SettingsStore(SettingsBackend& backend);
    ~SettingsStore();
    SettingsStore(const SettingsStore&) = delete;
    SettingsStore& operator=(const SettingsStore&) = delete;

    /// Values that answer as long as nothing is stored under their key; gone with the process. A
    /// key that was registered before takes the new value. Observers are not called.
    void registerDefaults(const Defaults& defaults);

    /// A stored value of another type counts as absent in the first two readings. Without a stored
    /// value the registered one answers, without that the result is false or nothing.
    [[nodiscard]] bool boolForKey(const std::string& key) const;
    [[nodiscard]] std::optional<std::string> stringForKey(const std::string& key) const;
    /// The value as it is stored, whatever its type, else the registered one: tells an absent key
    /// from a false or a 0, for a key that was never registered.
    [[nodiscard]] std::optional<SettingsValue> objectForKey(const std::string& key) const;
    /// What the first two readings answer, telling an absent value apart. `Value` is a type of
    /// SettingsValue.
    template <typename Value>
    [[nodiscard]] std::optional<Value> effectiveValue(const std::string& key) const;

    /// Persistent when they return, and then the observers of the key have been called. When the
    /// medium refuses, the value still holds in this process; telling the user is the back end's
    /// part, because a reader can do nothing about it.
    void setBool(const std::string& key, bool value);
    void setInteger(const std::string& key, std::int64_t value);
    void setString(const std::string& key, const std::string& value);

    /// Calls `observer` after each write of `key`, by this store or by another program. For
    /// controls that are bound to a key.
    [[nodiscard]] Observation observe(const std::string& key, std::function<void()> observer);

  private:
    void write(const std::string& key, const SettingsValue& value);

    SettingsBackend& backend_;
    std::map<std::string, SettingsValue> registered_;
    NotificationCenter changes_;
};

}  // namespace app
