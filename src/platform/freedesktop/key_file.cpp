#include "platform/freedesktop/key_file.h"

#include <algorithm>

#include "base/text.h"

namespace platform::freedesktop {

KeyFile KeyFile::parse(std::string_view text) {
    KeyFile file;
    std::string group;
    while (!text.empty()) {
        const auto end = std::min(text.find('\n'), text.size());
        const auto line = base::withoutOuterBlanks(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        const auto equals = line.find('=');
        if (line.starts_with('#')) {
            continue;
        }
        if (line.starts_with('[') && line.ends_with(']')) {
            group = line.substr(1, line.size() - 2);
        } else if (equals != std::string_view::npos && equals > 0) {
            file.groups_[group].try_emplace(
                std::string(base::withoutOuterBlanks(line.substr(0, equals))),
                base::withoutOuterBlanks(line.substr(equals + 1)));
        }
    }
    return file;
}

std::optional<std::string> KeyFile::value(const std::string& group, const std::string& key) const {
    const auto values = groups_.find(group);
    if (values == groups_.end()) {
        return std::nullopt;
    }
    const auto entry = values->second.find(key);
    return entry == values->second.end() ? std::nullopt : std::optional(entry->second);
}

std::vector<std::string> KeyFile::list(const std::string& group, const std::string& key) const {
    const std::string text = value(group, key).value_or(std::string());
    std::vector<std::string> parts;
    for (std::size_t begin = 0; begin < text.size();) {
        const auto end = std::min(text.find_first_of(",;", begin), text.size());
        const auto part =
            base::withoutOuterBlanks(std::string_view(text).substr(begin, end - begin));
        if (!part.empty()) {
            parts.emplace_back(part);
        }
        begin = end + 1;
    }
    return parts;
}

}  // namespace platform::freedesktop
