// Any key code and modifiers, and any answers of the server about its keyboard.

#include <algorithm>
#include <vector>

#include "fuzz_input.h"
#include "platform/x11/key_map.h"
#include "platform/x11/modifier_map.h"
#include "shortcuts/key_codes.h"
#include "shortcuts/shortcut_display.h"

namespace {

using namespace platform::x11;

void checkCode(std::int64_t code, std::int64_t modifiers) {
    fuzz::require(!shortcuts::keyName(code).empty(), "every key has a name");
    fuzz::require(
        shortcuts::shortcutDisplayString(code, modifiers).ends_with(shortcuts::keyName(code)),
        "a shortcut ends with its key");
    fuzz::require(!shortcuts::shortcutDisplayWords(code, modifiers).empty(),
                  "a shortcut has words");
    const auto key = static_cast<std::uint32_t>(code);
    if (const auto evdev = evdevCodeOf(key)) {
        fuzz::require(virtualKeyCodeOfEvdev(*evdev) == key, "the kernel's number leads back");
    }
    if (const auto keycode = keycodeOf(key)) {
        fuzz::require(virtualKeyCodeOf(*keycode) == key, "the server's number leads back");
    }
    if (const auto found = virtualKeyCodeOf(static_cast<xcb_keycode_t>(code))) {
        fuzz::require(keycodeOf(*found) == static_cast<xcb_keycode_t>(code),
                      "the virtual key code leads back");
    }
    isModifierKey(key);
}

void checkMask(const ModifierMap& map, std::uint32_t modifiers, std::uint16_t state) {
    const auto mask = modifierMaskOf(map, modifiers);
    if (!mask) {
        return;
    }
    const auto variants = lockVariantsOf(map, *mask);
    fuzz::require(variants.front() == *mask && variants.size() <= 8, "eight variants at most");
    const bool isListed = std::ranges::find(variants, state & 0xFF) != variants.end();
    fuzz::require(isListed == hasModifiers(map, state, *mask),
                  "what is grabbed is what is recognised");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const auto code = static_cast<std::int64_t>(input.number());
    const std::uint64_t modifiers = input.number();
    checkCode(code, static_cast<std::int64_t>(modifiers));
    checkCode(code & 0xFF, static_cast<std::int64_t>(modifiers & 0x1F00));

    const auto state = static_cast<std::uint16_t>(input.number());
    KeyboardTables tables;
    tables.firstKeycode = input.byte();
    tables.keysymsPerKeycode = input.byte();
    std::vector<xcb_keycode_t> keycodes(input.byte());
    std::ranges::generate(keycodes, [&] { return input.byte(); });
    // Of the symbols only those of modifier keys matter: 0xFF and a byte.
    std::vector<xcb_keysym_t> symbols(input.rest().size());
    std::ranges::transform(input.rest(), symbols.begin(),
                           [](std::uint8_t byte) { return 0xFF00U | byte; });
    tables.modifierKeycodes = keycodes;
    tables.keysyms = symbols;
    const ModifierMap map = modifierMapOf(tables);
    checkMask(map, static_cast<std::uint32_t>(modifiers), state);
    checkMask(map, static_cast<std::uint32_t>(modifiers & 0x1F00), state);
    return 0;
}
