#include "platform/x11/window_property.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace platform::x11 {

namespace {

constexpr std::size_t maximumTextLength = 256;

Reply<xcb_get_property_reply_t> receive(Connection& connection, PropertyRequest request) {
    // The error, a window that is gone, needs no other answer than a property that is not there.
    return Reply<xcb_get_property_reply_t>(
        xcb_get_property_reply(connection.get(), request.cookie, nullptr));
}

std::string_view bytesOf(const xcb_get_property_reply_t& reply) {
    const int length = xcb_get_property_value_length(&reply);
    return {static_cast<const char*>(xcb_get_property_value(&reply)),
            static_cast<std::size_t>(std::max(length, 0))};
}

void append(std::string& text, utf8proc_int32_t codePoint) {
    const bool isControl = utf8proc_category(codePoint) == UTF8PROC_CATEGORY_CC;
    std::array<utf8proc_uint8_t, 4> encoded{};
    const auto length = utf8proc_encode_char(isControl ? ' ' : codePoint, encoded.data());
    if (length > 0 && text.size() + static_cast<std::size_t>(length) <= maximumTextLength) {
        text.append(encoded.begin(), encoded.begin() + length);
    }
}

std::optional<std::string> printableUtf8(std::string_view bytes) {
    std::string text;
    const auto* position = reinterpret_cast<const utf8proc_uint8_t*>(bytes.data());
    auto rest = static_cast<utf8proc_ssize_t>(bytes.size());
    while (rest > 0) {
        utf8proc_int32_t codePoint = 0;
        const auto length = utf8proc_iterate(position, rest, &codePoint);
        if (length <= 0) {
            return std::nullopt;
        }
        append(text, codePoint);
        position += length;
        rest -= length;
    }
    return text;
}

}  // namespace

PropertyRequest askForProperty(Connection& connection, xcb_window_t window,
                               std::string_view property, std::uint32_t maximumBytes) {
    return {xcb_get_property(connection.get(), 0, window, connection.atom(property),
                             XCB_GET_PROPERTY_TYPE_ANY, 0, maximumBytes / 4)};
}

std::optional<std::uint32_t> readNumber(Connection& connection, PropertyRequest request,
                                        xcb_atom_t type) {
    const auto numbers = readNumbers(connection, request, type);
    return numbers.empty() ? std::nullopt : std::optional(numbers.front());
}

std::vector<std::uint32_t> readNumbers(Connection& connection, PropertyRequest request,
                                       xcb_atom_t type) {
    const auto reply = receive(connection, request);
    if (!reply || reply->type != type || reply->format != 32) {
        return {};
    }
    std::vector<std::uint32_t> numbers(bytesOf(*reply).size() / sizeof(std::uint32_t));
    if (!numbers.empty()) {
        std::memcpy(numbers.data(), bytesOf(*reply).data(), numbers.size() * sizeof(std::uint32_t));
    }
    return numbers;
}

bool readPresence(Connection& connection, PropertyRequest request) {
    const auto reply = receive(connection, request);
    return reply && reply->type != XCB_ATOM_NONE;
}

std::vector<std::string> readTexts(Connection& connection, PropertyRequest request) {
    const auto reply = receive(connection, request);
    const bool isText =
        reply && reply->format == 8 &&
        (reply->type == XCB_ATOM_STRING || reply->type == connection.atom("UTF8_STRING"));
    if (!isText) {
        return {};
    }
    std::vector<std::string> texts;
    std::string_view rest = bytesOf(*reply);
    while (!rest.empty()) {
        const auto end = std::min(rest.find('\0'), rest.size());
        texts.push_back(printableText(rest.substr(0, end)));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return texts;
}

std::string printableText(std::string_view bytes) {
    if (auto text = printableUtf8(bytes)) {
        return *text;
    }
    std::string text;
    for (const char byte : bytes) {
        append(text, static_cast<unsigned char>(byte));
    }
    return text;
}

}  // namespace platform::x11
