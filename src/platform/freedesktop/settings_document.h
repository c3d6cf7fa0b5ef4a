#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "app/settings_backend.h"

namespace platform::freedesktop {

/// One flat JSON object: values that are settings, and everything else kept as it came. A value.
class SettingsDocument {
  public:
    /// None when `text` is no JSON object, is no UTF-8, or is nested deeper than anything sensible.
    static std::optional<SettingsDocument> parse(std::string_view text);

    /// None for an absent key and for what is no Bool, no String and no integer of 64 bits; a
    /// number with a fraction or an exponent is no integer.
    [[nodiscard]] std::optional<app::SettingsValue> value(const std::string& key) const;
    /// False when a String is no UTF-8, which JSON cannot hold; nothing changes then.
    [[nodiscard]] bool set(const std::string& key, const app::SettingsValue& value);
    /// One line for each key, sorted.
    [[nodiscard]] std::string text() const;
    [[nodiscard]] std::set<std::string> keysThatDifferFrom(const SettingsDocument& other) const;

  private:
    /// Each value as JSON text.
    std::map<std::string, std::string> values_;
};

}  // namespace platform::freedesktop
