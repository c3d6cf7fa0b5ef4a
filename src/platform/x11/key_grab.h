#pragma once

#include <cstdint>
#include <vector>

#include "platform/x11/connection.h"
#include "platform/x11/modifier_map.h"

namespace platform::x11 {

/// One key with several sets of modifiers, each of which is to be grabbed.
struct KeyGrab {
    xcb_keycode_t keycode = 0;
    std::vector<ModifierMask> variants;
    friend bool operator==(const KeyGrab&, const KeyGrab&) = default;
};

enum class GrabOutcome {
    grabbed,
    /// Another program owns at least one of the combinations.
    taken,
    /// The server does not accept the key.
    refused,
};

/// Grabs every variant on the root window or, when one of them fails, none. One round trip.
GrabOutcome grabKey(Connection& connection, const KeyGrab& grab);
/// Ends the grabs; none of them needs to exist.
void ungrabKey(Connection& connection, const KeyGrab& grab);

}  // namespace platform::x11
