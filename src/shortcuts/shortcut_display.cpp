#include "shortcuts/shortcut_display.h"

#include <array>
#include <string_view>

#include "shortcuts/hot_key_service.h"
#include "shortcuts/key_codes.h"

namespace shortcuts {

namespace {

struct ModifierSymbol {
    std::int64_t mask;
    std::string_view symbol;
};

constexpr std::array<ModifierSymbol, 4> modifierSymbols{
    {{commandModifier, "⌘"}, {shiftModifier, "⇧"}, {optionModifier, "⌥"}, {controlModifier, "⌃"}}};

}  // namespace

std::string shortcutDisplayString(std::int64_t keyCode, std::int64_t modifiers) {
    std::string text;
    for (const auto& [mask, symbol] : modifierSymbols) {
        if ((modifiers & mask) != 0) {
            text += symbol;
        }
    }
    text += keyName(keyCode);
    return text.empty() ? "None" : text;
}

}  // namespace shortcuts
