#include "platform/x11/modifier_map.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>

#include "shortcuts/hot_key_service.h"

namespace platform::x11 {
namespace {

using shortcuts::commandModifier;
using shortcuts::controlModifier;
using shortcuts::optionModifier;
using shortcuts::shiftModifier;
using testing::Optional;
using testing::UnorderedElementsAre;

constexpr xcb_keysym_t numLock = 0xFF7F;
constexpr xcb_keysym_t scrollLock = 0xFF14;
constexpr xcb_keysym_t leftAlt = 0xFFE9;
constexpr xcb_keysym_t leftMeta = 0xFFE7;
constexpr xcb_keysym_t rightSuper = 0xFFEC;

/// The keycodes 8, 9, ... carry these symbols, two levels each.
constexpr std::array<xcb_keysym_t, 10> symbols{leftAlt, leftMeta,   0, numLock, rightSuper,
                                               0,       scrollLock, 0, 0,       0};

ModifierMap mapOf(const std::vector<xcb_keycode_t>& keycodes) {
    return modifierMapOf({.modifierKeycodes = keycodes,
                          .firstKeycode = 8,
                          .keysymsPerKeycode = 2,
                          .keysyms = symbols});
}

constexpr ModifierMap usual{.command = 64, .option = 8, .numLock = 16, .scrollLock = 0};

TEST(ModifierMap, each_modifier_is_the_bit_of_the_row_with_its_key) {
    const auto map = mapOf({0, 0, 0, 0, 0, 0, 8, 0, 9, 0, 11, 0, 10, 0, 0, 0});
    EXPECT_EQ(map, (ModifierMap{.command = 64, .option = 8, .numLock = 16, .scrollLock = 32}));
}

TEST(ModifierMap, a_modifier_without_a_key_has_no_bit) {
    EXPECT_EQ(mapOf(std::vector<xcb_keycode_t>(16)), ModifierMap{});
    EXPECT_EQ(mapOf({}), ModifierMap{});
}

TEST(ModifierMap, shift_lock_and_control_can_not_be_taken_by_other_keys) {
    EXPECT_EQ(mapOf({8, 9, 10, 0, 0, 0, 0, 0}), ModifierMap{});
}

TEST(ModifierMap, keycodes_outside_of_the_table_are_passed_over) {
    EXPECT_EQ(mapOf({0, 0, 0, 1, 7, 13, 255, 12}), ModifierMap{});
}

TEST(ModifierMap, stored_masks_become_modifier_bits) {
    EXPECT_THAT(modifierMaskOf(usual, 0), Optional(0));
    EXPECT_THAT(modifierMaskOf(usual, commandModifier | shiftModifier), Optional(65));
    EXPECT_THAT(modifierMaskOf(usual, optionModifier | controlModifier), Optional(12));
}

TEST(ModifierMap, unknown_bits_and_missing_modifiers_have_no_mask) {
    for (std::uint32_t bit = 1; bit != 0; bit <<= 1) {
        const bool isKnown = bit == 256 || bit == 512 || bit == 2048 || bit == 4096;
        EXPECT_EQ(modifierMaskOf(usual, bit).has_value(), isKnown) << bit;
    }
    EXPECT_EQ(modifierMaskOf(ModifierMap{}, commandModifier), std::nullopt);
    EXPECT_EQ(modifierMaskOf(ModifierMap{}, optionModifier), std::nullopt);
    EXPECT_THAT(modifierMaskOf(ModifierMap{}, shiftModifier | controlModifier), Optional(5));
}

TEST(ModifierMap, the_lock_variants_are_every_set_of_locks) {
    EXPECT_THAT(lockVariantsOf(usual, 65), UnorderedElementsAre(65, 67, 81, 83));
    EXPECT_THAT(lockVariantsOf(ModifierMap{}, 1), UnorderedElementsAre(1, 3));
    const ModifierMap withScroll{.command = 64, .option = 8, .numLock = 16, .scrollLock = 32};
    EXPECT_EQ(lockVariantsOf(withScroll, 65).size(), 8U);
}

TEST(ModifierMap, a_lock_that_shares_its_bit_with_a_wanted_modifier_is_no_variant) {
    const ModifierMap shared{.command = 16, .option = 8, .numLock = 16, .scrollLock = 0};
    EXPECT_THAT(lockVariantsOf(shared, 16), UnorderedElementsAre(16, 18));
}

TEST(ModifierMap, exactly_the_wanted_modifiers_match_whatever_locks_are_on) {
    for (std::uint16_t state = 0; state < 256; ++state) {
        const bool isMatch = (state & ~(2 | 16)) == 65;
        EXPECT_EQ(hasModifiers(usual, state, 65), isMatch) << state;
    }
}

TEST(ModifierMap, mouse_buttons_and_layout_groups_make_no_difference) {
    EXPECT_TRUE(hasModifiers(usual, 65 | 0x1F00, 65));
    EXPECT_TRUE(hasModifiers(usual, 65 | 0x6000, 65));
}

}  // namespace
}  // namespace platform::x11
