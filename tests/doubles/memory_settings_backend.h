#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/settings_backend.h"
#include "doubles/call_log.h"

namespace doubles {

/// Keeps the values in memory; `writeError` lets writes fail, while the value stays readable.
/// In a call log: "setting: <key> = <value>".
class MemorySettingsBackend final : public app::SettingsBackend, public Recorder {
  public:
    std::optional<app::SettingsValue> read(const std::string& key) override {
        ++readCount;
        const auto entry = values.find(key);
        return entry == values.end() ? std::nullopt : std::optional(entry->second);
    }
    base::Status write(const std::string& key, const app::SettingsValue& value) override {
        values[key] = value;
        writes.push_back(key + " = " + text(value));
        record("setting: " + writes.back());
        if (writeError) {
            return *writeError;
        }
        return base::Nothing{};
    }
    void setChangeHandler(std::function<void(const std::string& key)> handler) override {
        handler_ = std::move(handler);
    }

    /// Another program writes a value, or deletes it.
    void changeFromOutside(const std::string& key, std::optional<app::SettingsValue> value) {
        if (value) {
            values[key] = *value;
        } else {
            values.erase(key);
        }
        if (handler_) {
            const auto handler = handler_;
            handler(key);
        }
    }
    [[nodiscard]] bool hasChangeHandler() const { return handler_ != nullptr; }

    std::map<std::string, app::SettingsValue> values;
    /// Every write of this process as "<key> = <value>", in its order.
    std::vector<std::string> writes;
    std::optional<base::Error> writeError;
    int readCount = 0;

  private:
    static std::string text(const app::SettingsValue& value) {
        if (const bool* flag = std::get_if<bool>(&value)) {
            return *flag ? "true" : "false";
        }
        if (const auto* number = std::get_if<std::int64_t>(&value)) {
            return std::to_string(*number);
        }
        return "\"" + std::get<std::string>(value) + "\"";
    }

    std::function<void(const std::string& key)> handler_;
};

}  // namespace doubles
