#include "platform/x11/key_map.h"

#include <algorithm>
#include <array>
#include <limits>

namespace platform::x11 {

namespace {

constexpr std::uint32_t keycodeOffset = 8;

struct KeyPosition {
    std::uint32_t virtualKeyCode;
    std::uint32_t evdevCode;
};

// Virtual key codes as in Apple's HIToolbox/Events.h, kernel numbers as in
// linux/input-event-codes.h. Where the two keyboards differ, the position decides: F13, F14 and F15
// sit where a PC has Print, Scroll Lock and Pause, Help where it has Insert, Clear where it has Num
// Lock, command where it has the logo key and option where it has Alt.
constexpr std::array<KeyPosition, 120> keyPositions{{
    {0, 30},     // A
    {1, 31},     // S
    {2, 32},     // D
    {3, 33},     // F
    {4, 35},     // H
    {5, 34},     // G
    {6, 44},     // Z
    {7, 45},     // X
    {8, 46},     // C
    {9, 47},     // V
    {10, 86},    // the key left of Z on keyboards of 105 keys
    {11, 48},    // B
    {12, 16},    // Q
    {13, 17},    // W
    {14, 18},    // E
    {15, 19},    // R
    {16, 21},    // Y
    {17, 20},    // T
    {18, 2},     // 1
    {19, 3},     // 2
    {20, 4},     // 3
    {21, 5},     // 4
    {22, 7},     // 6
    {23, 6},     // 5
    {24, 13},    // =
    {25, 10},    // 9
    {26, 8},     // 7
    {27, 12},    // -
    {28, 9},     // 8
    {29, 11},    // 0
    {30, 27},    // ]
    {31, 24},    // O
    {32, 22},    // U
    {33, 26},    // [
    {34, 23},    // I
    {35, 25},    // P
    {36, 28},    // Return
    {37, 38},    // L
    {38, 36},    // J
    {39, 40},    // '
    {40, 37},    // K
    {41, 39},    // ;
    {42, 43},    // backslash
    {43, 51},    // ,
    {44, 53},    // /
    {45, 49},    // N
    {46, 50},    // M
    {47, 52},    // .
    {48, 15},    // Tab
    {49, 57},    // Space
    {50, 41},    // `
    {51, 14},    // Backspace
    {53, 1},     // Escape
    {54, 126},   // right command
    {55, 125},   // left command
    {56, 42},    // left shift
    {57, 58},    // Caps Lock
    {58, 56},    // left option
    {59, 29},    // left control
    {60, 54},    // right shift
    {61, 100},   // right option
    {62, 97},    // right control
    {63, 464},   // Fn
    {64, 187},   // F17
    {65, 83},    // keypad .
    {67, 55},    // keypad *
    {69, 78},    // keypad +
    {71, 69},    // Num Lock
    {72, 115},   // volume up
    {73, 114},   // volume down
    {74, 113},   // mute
    {75, 98},    // keypad /
    {76, 96},    // keypad Enter
    {78, 74},    // keypad -
    {79, 188},   // F18
    {80, 189},   // F19
    {81, 117},   // keypad =
    {82, 82},    // keypad 0
    {83, 79},    // keypad 1
    {84, 80},    // keypad 2
    {85, 81},    // keypad 3
    {86, 75},    // keypad 4
    {87, 76},    // keypad 5
    {88, 77},    // keypad 6
    {89, 71},    // keypad 7
    {90, 190},   // F20
    {91, 72},    // keypad 8
    {92, 73},    // keypad 9
    {93, 124},   // Yen
    {94, 89},    // the key left of the right shift on Japanese and Brazilian keyboards
    {95, 121},   // keypad ,
    {96, 63},    // F5
    {97, 64},    // F6
    {98, 65},    // F7
    {99, 61},    // F3
    {100, 66},   // F8
    {101, 67},   // F9
    {102, 123},  // Eisu
    {103, 87},   // F11
    {104, 122},  // Kana
    {105, 99},   // Print
    {106, 186},  // F16
    {107, 70},   // Scroll Lock
    {109, 68},   // F10
    {110, 127},  // Menu
    {111, 88},   // F12
    {113, 119},  // Pause
    {114, 110},  // Insert
    {115, 102},  // Home
    {116, 104},  // Page Up
    {117, 111},  // Delete
    {118, 62},   // F4
    {119, 107},  // End
    {120, 60},   // F2
    {121, 109},  // Page Down
    {122, 59},   // F1
    {123, 105},  // Left
    {124, 106},  // Right
    {125, 108},  // Down
    {126, 103},  // Up
}};

}  // namespace

std::optional<std::uint32_t> evdevCodeOf(std::uint32_t virtualKeyCode) {
    const auto position =
        std::ranges::find(keyPositions, virtualKeyCode, &KeyPosition::virtualKeyCode);
    return position == keyPositions.end() ? std::nullopt : std::optional(position->evdevCode);
}

std::optional<std::uint32_t> virtualKeyCodeOfEvdev(std::uint32_t evdevCode) {
    const auto position = std::ranges::find(keyPositions, evdevCode, &KeyPosition::evdevCode);
    return position == keyPositions.end() ? std::nullopt : std::optional(position->virtualKeyCode);
}

std::optional<xcb_keycode_t> keycodeOf(std::uint32_t virtualKeyCode) {
    const auto evdevCode = evdevCodeOf(virtualKeyCode);
    if (!evdevCode || *evdevCode + keycodeOffset > std::numeric_limits<xcb_keycode_t>::max()) {
        return std::nullopt;
    }
    return static_cast<xcb_keycode_t>(*evdevCode + keycodeOffset);
}

std::optional<std::uint32_t> virtualKeyCodeOf(xcb_keycode_t keycode) {
    return keycode < keycodeOffset ? std::nullopt : virtualKeyCodeOfEvdev(keycode - keycodeOffset);
}

bool isModifierKey(std::uint32_t virtualKeyCode) {
    constexpr std::uint32_t firstModifier = 54;
    constexpr std::uint32_t lastModifier = 63;
    return virtualKeyCode >= firstModifier && virtualKeyCode <= lastModifier;
}

}  // namespace platform::x11
