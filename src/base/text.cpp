#include "base/text.h"

#include <utf8proc.h>

#include <array>
#include <charconv>

namespace base {

std::string decimalText(double number) {
    std::array<char, 64> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
    std::string text(buffer.data(), end.ptr);
    if (text.find_first_not_of("-0123456789") == std::string::npos) {
        text += ".0";
    }
    return text;
}

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::string latin1Text(std::string_view text) {
    std::string latin1;
    latin1.reserve(text.size());
    while (!text.empty()) {
        utf8proc_int32_t letter = 0;
        const auto length = utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                                             static_cast<utf8proc_ssize_t>(text.size()), &letter);
        const bool fits = length > 0 && letter <= 0xFF;
        latin1.push_back(fits ? static_cast<char>(letter) : '?');
        text.remove_prefix(length > 0 ? static_cast<std::size_t>(length) : 1);
    }
    return latin1;
}

}  // namespace base
