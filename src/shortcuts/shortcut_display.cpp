#include "shortcuts/shortcut_display.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "shortcuts/hot_key_service.h"
#include "shortcuts/key_codes.h"

namespace shortcuts {

namespace {

struct ModifierSymbol {
    std::int64_t mask;
    std::string_view symbol;
    std::string_view word;
};

constexpr std::array<ModifierSymbol, 4> modifierSymbols{{{commandModifier, "⌘", "Super"},
                                                         {shiftModifier, "⇧", "Shift"},
                                                         {optionModifier, "⌥", "Alt"},
                                                         {controlModifier, "⌃", "Ctrl"}}};

struct KeySymbol {
    std::string_view symbol;
    std::string_view word;
};

constexpr std::array<KeySymbol, 12> keySymbols{{{"⌘", "Super"},
                                                {"⇧", "Shift"},
                                                {"⌥", "Alt"},
                                                {"⌃", "Ctrl"},
                                                {"↩", "Return"},
                                                {"⇥", "Tab"},
                                                {"⌫", "Backspace"},
                                                {"⎋", "Escape"},
                                                {"←", "Left"},
                                                {"→", "Right"},
                                                {"↓", "Down"},
                                                {"↑", "Up"}}};

}  // namespace

std::string shortcutDisplayString(std::int64_t keyCode, std::int64_t modifiers) {
    std::string text;
    for (const ModifierSymbol& modifier : modifierSymbols) {
        if ((modifiers & modifier.mask) != 0) {
            text += modifier.symbol;
        }
    }
    text += keyName(keyCode);
    return text.empty() ? "None" : text;
}

std::string shortcutDisplayWords(std::int64_t keyCode, std::int64_t modifiers) {
    std::string text;
    for (const ModifierSymbol& modifier : modifierSymbols) {
        if ((modifiers & modifier.mask) != 0) {
            text += std::string(modifier.word) + "+";
        }
    }
    const std::string name = keyName(keyCode);
    const auto* const key = std::ranges::find(keySymbols, name, &KeySymbol::symbol);
    return text + (key == keySymbols.end() ? name : std::string(key->word));
}

}  // namespace shortcuts
