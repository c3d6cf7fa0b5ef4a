#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/x11/connection.h"

namespace platform::x11 {

// Properties hold whatever another program put there, so type, format and length are checked here
// and nowhere else. Asking and reading are two calls: ask for everything first, then read, and all
// of it costs one round trip.

/// A property that was asked for. Must be read exactly once.
struct PropertyRequest {
    xcb_get_property_cookie_t cookie;
};

/// Asks for at most `maximumBytes` of a property of any type.
PropertyRequest askForProperty(Connection& connection, xcb_window_t window,
                               std::string_view property, std::uint32_t maximumBytes = 1024);

/// The first number of a property of 32-bit numbers of the type `type`.
std::optional<std::uint32_t> readNumber(Connection& connection, PropertyRequest request,
                                        xcb_atom_t type);
/// All numbers of such a property, as far as they were asked for; empty when there is none.
std::vector<std::uint32_t> readNumbers(Connection& connection, PropertyRequest request,
                                       xcb_atom_t type);
/// Whether the property is there at all, whatever it holds.
bool readPresence(Connection& connection, PropertyRequest request);
/// The texts of a property of the type STRING or UTF8_STRING, which are separated by zero bytes,
/// each made printable. Empty when there is none.
std::vector<std::string> readTexts(Connection& connection, PropertyRequest request);

/// `bytes` as one line of UTF-8: what is not UTF-8 is read as Latin-1, control characters become
/// blanks, and the text is cut at 256 bytes between two characters.
std::string printableText(std::string_view bytes);

}  // namespace platform::x11
