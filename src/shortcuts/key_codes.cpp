#include "shortcuts/key_codes.h"

#include <array>
#include <string_view>

namespace shortcuts {

namespace {

// The index is the virtual key code, as in Apple's HIToolbox/Events.h; empty where a code has no
// name.
constexpr std::array<std::string_view, 127> keyNames{
    // 0
    "A", "S", "D", "F", "H", "G", "Z", "X", "C", "V",
    // 10
    "", "B", "Q", "W", "E", "R", "Y", "T", "1", "2",
    // 20
    "3", "4", "6", "5", "=", "9", "7", "-", "8", "0",
    // 30
    "]", "O", "U", "[", "I", "P", "↩", "L", "J", "'",
    // 40
    "K", ";", "\\", ",", "/", "N", "M", ".", "⇥", "Space",
    // 50
    "`", "⌫", "", "⎋", "⌘", "⌘", "⇧", "Caps", "⌥", "⌃",
    // 60
    "⇧", "⌥", "⌃", "Fn", "", ".", "", "*", "", "+",
    // 70
    "", "Clear", "", "", "", "/", "Enter", "", "-", "",
    // 80
    "", "=", "0", "1", "2", "3", "4", "5", "6", "7",
    // 90
    "", "8", "9", "", "", "", "F5", "F6", "F7", "F3",
    // 100
    "F8", "F9", "", "F11", "", "", "", "", "", "F10",
    // 110
    "", "F12", "", "", "", "", "", "", "F4", "",
    // 120
    "F2", "", "F1", "←", "→", "↓", "↑"};

}  // namespace

std::string keyName(std::int64_t keyCode) {
    if (keyCode >= 0 && keyCode < static_cast<std::int64_t>(keyNames.size())) {
        const std::string_view name = keyNames.at(static_cast<std::size_t>(keyCode));
        if (!name.empty()) {
            return std::string(name);
        }
    }
    return "Key " + std::to_string(keyCode);
}

}  // namespace shortcuts
