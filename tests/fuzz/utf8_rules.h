#pragma once

#include <utf8proc.h>

#include <string_view>

namespace fuzz {

/// Whether `text` is UTF-8 as a whole.
inline bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        utf8proc_int32_t codePoint = 0;
        const auto length =
            utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                             static_cast<utf8proc_ssize_t>(text.size()), &codePoint);
        if (length <= 0) {
            return false;
        }
        text.remove_prefix(static_cast<std::size_t>(length));
    }
    return true;
}

/// Of valid UTF-8: whether it holds a control character, of ASCII or of Latin-1.
inline bool hasControl(std::string_view text) {
    while (!text.empty()) {
        utf8proc_int32_t codePoint = 0;
        const auto length =
            utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                             static_cast<utf8proc_ssize_t>(text.size()), &codePoint);
        if (length <= 0 || utf8proc_category(codePoint) == UTF8PROC_CATEGORY_CC) {
            return true;
        }
        text.remove_prefix(static_cast<std::size_t>(length));
    }
    return false;
}

/// Of valid UTF-8: how many characters a reader sees.
inline int clusters(std::string_view text) {
    int count = 0;
    utf8proc_int32_t previous = 0;
    utf8proc_int32_t state = 0;
    while (!text.empty()) {
        utf8proc_int32_t codePoint = 0;
        const auto length =
            utf8proc_iterate(reinterpret_cast<const utf8proc_uint8_t*>(text.data()),
                             static_cast<utf8proc_ssize_t>(text.size()), &codePoint);
        if (length <= 0) {
            break;
        }
        if (count == 0 || utf8proc_grapheme_break_stateful(previous, codePoint, &state)) {
            ++count;
        }
        previous = codePoint;
        text.remove_prefix(static_cast<std::size_t>(length));
    }
    return count;
}

}  // namespace fuzz
