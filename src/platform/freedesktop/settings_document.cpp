#include "platform/freedesktop/settings_document.h"

#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>

namespace platform::freedesktop {

namespace {

using nlohmann::json;

/// The library prints nested values by recursion: a file must not choose how deep the stack gets.
constexpr int deepestNesting = 64;

/// None when JSON cannot hold it.
std::optional<std::string> jsonText(const json& value) {
    try {
        return value.dump();
    } catch (const json::type_error&) {
        return std::nullopt;
    }
}

json jsonOf(const app::SettingsValue& value) {
    return std::visit([](const auto& held) { return json(held); }, value);
}

bool fitsInt64(const json& number) {
    constexpr auto largest = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    return !number.is_number_unsigned() || number.get<std::uint64_t>() <= largest;
}

}  // namespace

std::optional<SettingsDocument> SettingsDocument::parse(std::string_view text) {
    // The library takes a zero byte for the end, and what follows it would be lost in silence.
    if (text.find('\0') != std::string_view::npos) {
        return std::nullopt;
    }
    bool isTooDeep = false;
    const auto limitDepth = [&isTooDeep](int depth, json::parse_event_t, json&) {
        isTooDeep = isTooDeep || depth > deepestNesting;
        return !isTooDeep;
    };
    const json object = json::parse(text, limitDepth, false);
    if (isTooDeep || !object.is_object()) {
        return std::nullopt;
    }
    SettingsDocument document;
    for (const auto& [key, value] : object.items()) {
        document.values_.insert_or_assign(key, value.dump());
    }
    return document;
}

std::optional<app::SettingsValue> SettingsDocument::value(const std::string& key) const {
    const auto entry = values_.find(key);
    if (entry == values_.end()) {
        return std::nullopt;
    }
    const json held = json::parse(entry->second, nullptr, false);
    if (held.is_boolean()) {
        return held.get<bool>();
    }
    if (held.is_string()) {
        return held.get<std::string>();
    }
    if (held.is_number_integer() && fitsInt64(held)) {
        return held.get<std::int64_t>();
    }
    return std::nullopt;
}

bool SettingsDocument::set(const std::string& key, const app::SettingsValue& value) {
    const auto held = jsonText(jsonOf(value));
    if (!held || !jsonText(json(key))) {
        return false;
    }
    values_.insert_or_assign(key, *held);
    return true;
}

std::string SettingsDocument::text() const {
    std::string text = "{";
    const char* separator = "\n";
    for (const auto& [key, value] : values_) {
        text += separator + std::string("  ") + json(key).dump() + ": " + value;
        separator = ",\n";
    }
    return text + "\n}\n";
}

std::set<std::string> SettingsDocument::keysThatDifferFrom(const SettingsDocument& other) const {
    std::set<std::string> keys;
    const auto collect = [&keys](const auto& from, const auto& to) {
        for (const auto& [key, value] : from) {
            const auto entry = to.find(key);
            if (entry == to.end() || entry->second != value) {
                keys.insert(key);
            }
        }
    };
    collect(values_, other.values_);
    collect(other.values_, values_);
    return keys;
}

}  // namespace platform::freedesktop
