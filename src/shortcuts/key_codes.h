#pragma once

#include <cstdint>
#include <string>

namespace shortcuts {

/// What a person reads for a virtual key code (a position of the Apple keyboard, named as on the US
/// layout): "A", "⇥", "F5"; "Key " and the number for a code without a name. The keypad's keys have
/// the names of the main row's. UTF-8; any thread.
std::string keyName(std::int64_t keyCode);

}  // namespace shortcuts
