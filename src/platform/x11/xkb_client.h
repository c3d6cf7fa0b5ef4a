#pragma once

#include <cstdint>

#include "platform/x11/connection.h"

namespace platform::x11 {

/// Makes `connection` a client of the keyboard extension: a held key repeats without releases in
/// between, and changes of the keyboard and its mapping are told. Gives the number of the
/// extension's events, 0 on a server without it.
std::uint8_t becomeXkbClient(Connection& connection);

/// Whether an event of that number says that the mapping may have changed.
bool isXkbMappingChange(const xcb_generic_event_t& event);

}  // namespace platform::x11
