#pragma once

#include "fuzz_input.h"

namespace fuzz {

/// In a program with made_up_server.cpp there is no X server: every answer is made up from the
/// input as it is asked for. What the server itself guarantees holds (lengths that are true,
/// windows that are a tree), what other programs decide does not.
void answerFrom(const Input& input);

/// The root window, and how many windows there may be beside it: 1, 2, ...
inline constexpr unsigned rootWindow = 0x40;
inline constexpr unsigned mostWindows = 12;

}  // namespace fuzz
