#include "app/settings_store.h"

namespace app {

SettingsStore::SettingsStore(SettingsBackend& backend) : backend_(backend) {
    backend_.setChangeHandler([this](const std::string& key) { changes_.post(key); });
}

SettingsStore::~SettingsStore() {
    backend_.setChangeHandler({});
}

void SettingsStore::registerDefaults(const Defaults& defaults) {
    for (const auto& [key, value] : defaults) {
        registered_[key] = value;
    }
}

template <typename Value>
std::optional<Value> SettingsStore::effectiveValue(const std::string& key) const {
    if (const auto stored = backend_.read(key)) {
        if (const Value* value = std::get_if<Value>(&*stored)) {
            return *value;
        }
    }
    const auto registered = registered_.find(key);
    if (registered != registered_.end()) {
        if (const Value* value = std::get_if<Value>(&registered->second)) {
            return *value;
        }
    }
    return std::nullopt;
}

template std::optional<bool> SettingsStore::effectiveValue<bool>(const std::string&) const;
template std::optional<std::int64_t> SettingsStore::effectiveValue<std::int64_t>(
    const std::string&) const;
template std::optional<std::string> SettingsStore::effectiveValue<std::string>(
    const std::string&) const;

bool SettingsStore::boolForKey(const std::string& key) const {
    return effectiveValue<bool>(key).value_or(false);
}

std::optional<std::string> SettingsStore::stringForKey(const std::string& key) const {
    return effectiveValue<std::string>(key);
}

std::optional<SettingsValue> SettingsStore::objectForKey(const std::string& key) const {
    if (auto stored = backend_.read(key)) {
        return stored;
    }
    const auto registered = registered_.find(key);
    return registered == registered_.end() ? std::nullopt : std::optional(registered->second);
}

void SettingsStore::setBool(const std::string& key, bool value) {
    write(key, value);
}

void SettingsStore::setInteger(const std::string& key, std::int64_t value) {
    write(key, value);
}

void SettingsStore::setString(const std::string& key, const std::string& value) {
    write(key, value);
}

SettingsStore::Observation SettingsStore::observe(const std::string& key,
                                                  std::function<void()> observer) {
    return changes_.observe(key, std::move(observer));
}

void SettingsStore::write(const std::string& key, const SettingsValue& value) {
    static_cast<void>(backend_.write(key, value));
    changes_.post(key);
}

}  // namespace app
