#pragma once

#include <cstdint>
#include <string>

namespace shortcuts {

/// A shortcut as text: the symbols of its modifiers in the order command, shift, option, control,
/// then the key's name; "None" when there is nothing to show. `modifiers` is an OR of
/// `commandModifier` and its like, other bits show nothing. UTF-8; any thread.
std::string shortcutDisplayString(std::int64_t keyCode, std::int64_t modifiers);

/// The same in words instead of symbols ("Super+Shift+1"), with the names that PC keyboards have
/// for the keys: for those who cannot see the symbols. UTF-8; any thread.
std::string shortcutDisplayWords(std::int64_t keyCode, std::int64_t modifiers);

}  // namespace shortcuts
