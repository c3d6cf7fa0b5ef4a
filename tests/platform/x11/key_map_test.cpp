#include "platform/x11/key_map.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <map>
#include <set>

namespace platform::x11 {
namespace {

// The kernel's own names are the second opinion on the numbers of the map.
const std::map<std::uint32_t, std::uint32_t>& expectedEvdevCodes() {
    static const std::map<std::uint32_t, std::uint32_t> codes{
        {0, KEY_A},
        {1, KEY_S},
        {2, KEY_D},
        {3, KEY_F},
        {4, KEY_H},
        {5, KEY_G},
        {6, KEY_Z},
        {7, KEY_X},
        {8, KEY_C},
        {9, KEY_V},
        {10, KEY_102ND},
        {11, KEY_B},
        {12, KEY_Q},
        {13, KEY_W},
        {14, KEY_E},
        {15, KEY_R},
        {16, KEY_Y},
        {17, KEY_T},
        {18, KEY_1},
        {19, KEY_2},
        {20, KEY_3},
        {21, KEY_4},
        {22, KEY_6},
        {23, KEY_5},
        {24, KEY_EQUAL},
        {25, KEY_9},
        {26, KEY_7},
        {27, KEY_MINUS},
        {28, KEY_8},
        {29, KEY_0},
        {30, KEY_RIGHTBRACE},
        {31, KEY_O},
        {32, KEY_U},
        {33, KEY_LEFTBRACE},
        {34, KEY_I},
        {35, KEY_P},
        {36, KEY_ENTER},
        {37, KEY_L},
        {38, KEY_J},
        {39, KEY_APOSTROPHE},
        {40, KEY_K},
        {41, KEY_SEMICOLON},
        {42, KEY_BACKSLASH},
        {43, KEY_COMMA},
        {44, KEY_SLASH},
        {45, KEY_N},
        {46, KEY_M},
        {47, KEY_DOT},
        {48, KEY_TAB},
        {49, KEY_SPACE},
        {50, KEY_GRAVE},
        {51, KEY_BACKSPACE},
        {53, KEY_ESC},
        {54, KEY_RIGHTMETA},
        {55, KEY_LEFTMETA},
        {56, KEY_LEFTSHIFT},
        {57, KEY_CAPSLOCK},
        {58, KEY_LEFTALT},
        {59, KEY_LEFTCTRL},
        {60, KEY_RIGHTSHIFT},
        {61, KEY_RIGHTALT},
        {62, KEY_RIGHTCTRL},
        {63, KEY_FN},
        {64, KEY_F17},
        {65, KEY_KPDOT},
        {67, KEY_KPASTERISK},
        {69, KEY_KPPLUS},
        {71, KEY_NUMLOCK},
        {72, KEY_VOLUMEUP},
        {73, KEY_VOLUMEDOWN},
        {74, KEY_MUTE},
        {75, KEY_KPSLASH},
        {76, KEY_KPENTER},
        {78, KEY_KPMINUS},
        {79, KEY_F18},
        {80, KEY_F19},
        {81, KEY_KPEQUAL},
        {82, KEY_KP0},
        {83, KEY_KP1},
        {84, KEY_KP2},
        {85, KEY_KP3},
        {86, KEY_KP4},
        {87, KEY_KP5},
        {88, KEY_KP6},
        {89, KEY_KP7},
        {90, KEY_F20},
        {91, KEY_KP8},
        {92, KEY_KP9},
        {93, KEY_YEN},
        {94, KEY_RO},
        {95, KEY_KPCOMMA},
        {96, KEY_F5},
        {97, KEY_F6},
        {98, KEY_F7},
        {99, KEY_F3},
        {100, KEY_F8},
        {101, KEY_F9},
        {102, KEY_HANJA},
        {103, KEY_F11},
        {104, KEY_HANGEUL},
        {105, KEY_SYSRQ},
        {106, KEY_F16},
        {107, KEY_SCROLLLOCK},
        {109, KEY_F10},
        {110, KEY_COMPOSE},
        {111, KEY_F12},
        {113, KEY_PAUSE},
        {114, KEY_INSERT},
        {115, KEY_HOME},
        {116, KEY_PAGEUP},
        {117, KEY_DELETE},
        {118, KEY_F4},
        {119, KEY_END},
        {120, KEY_F2},
        {121, KEY_PAGEDOWN},
        {122, KEY_F1},
        {123, KEY_LEFT},
        {124, KEY_RIGHT},
        {125, KEY_DOWN},
        {126, KEY_UP},
    };
    return codes;
}

constexpr std::uint32_t allVirtualKeyCodes = 128;

TEST(KeyMap, every_virtual_key_code_is_the_kernels_key_at_the_same_position) {
    for (std::uint32_t code = 0; code < allVirtualKeyCodes; ++code) {
        const auto expected = expectedEvdevCodes().find(code);
        EXPECT_EQ(evdevCodeOf(code), expected == expectedEvdevCodes().end()
                                         ? std::nullopt
                                         : std::optional(expected->second))
            << "virtual key code " << code;
    }
}

TEST(KeyMap, only_codes_without_a_position_have_no_key) {
    std::set<std::uint32_t> without;
    for (std::uint32_t code = 0; code < allVirtualKeyCodes; ++code) {
        if (!evdevCodeOf(code)) {
            without.insert(code);
        }
    }
    EXPECT_THAT(without, testing::ElementsAre(52, 66, 68, 70, 77, 108, 112, 127));
}

TEST(KeyMap, mapping_there_and_back_gives_the_same_key) {
    for (const auto& [virtualKeyCode, evdevCode] : expectedEvdevCodes()) {
        EXPECT_EQ(virtualKeyCodeOfEvdev(evdevCode), virtualKeyCode);
    }
}

TEST(KeyMap, no_two_kernel_codes_share_a_virtual_key_code) {
    std::set<std::uint32_t> seen;
    for (std::uint32_t evdevCode = 0; evdevCode < KEY_MAX; ++evdevCode) {
        if (const auto code = virtualKeyCodeOfEvdev(evdevCode)) {
            EXPECT_TRUE(seen.insert(*code).second) << "virtual key code " << *code;
        }
    }
    EXPECT_EQ(seen.size(), expectedEvdevCodes().size());
}

TEST(KeyMap, an_x_keycode_is_the_kernels_code_plus_eight) {
    EXPECT_EQ(keycodeOf(18), 10);
    EXPECT_EQ(keycodeOf(49), 65);
    EXPECT_EQ(keycodeOf(53), 9);
    EXPECT_EQ(virtualKeyCodeOf(10), 18U);
    EXPECT_EQ(virtualKeyCodeOf(65), 49U);
    EXPECT_EQ(virtualKeyCodeOf(9), 53U);
}

TEST(KeyMap, every_x_keycode_maps_back_to_itself_or_has_no_code) {
    for (int keycode = 0; keycode <= 255; ++keycode) {
        if (const auto code = virtualKeyCodeOf(static_cast<xcb_keycode_t>(keycode))) {
            EXPECT_EQ(keycodeOf(*code), keycode);
        }
    }
    EXPECT_EQ(virtualKeyCodeOf(0), std::nullopt);
    EXPECT_EQ(virtualKeyCodeOf(255), std::nullopt);
}

TEST(KeyMap, the_fn_key_has_a_position_but_no_x_keycode) {
    EXPECT_TRUE(evdevCodeOf(63).has_value());
    EXPECT_EQ(keycodeOf(63), std::nullopt);
}

TEST(KeyMap, a_code_beyond_the_keyboard_has_no_key) {
    EXPECT_EQ(keycodeOf(127), std::nullopt);
    EXPECT_EQ(keycodeOf(0xFFFFFFFF), std::nullopt);
}

TEST(KeyMap, the_modifier_keys_are_the_ten_that_only_change_the_modifiers) {
    std::set<std::uint32_t> modifiers;
    for (std::uint32_t code = 0; code < allVirtualKeyCodes; ++code) {
        if (isModifierKey(code)) {
            modifiers.insert(code);
        }
    }
    EXPECT_THAT(modifiers, testing::ElementsAre(54, 55, 56, 57, 58, 59, 60, 61, 62, 63));
}

}  // namespace
}  // namespace platform::x11
