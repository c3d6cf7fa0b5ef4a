#pragma once

#include <map>
#include <string>

#include "desktop/desktop.h"
#include "desktop/process.h"

namespace soak {

/// What a program has of each thing that could grow: "resident KiB", "descriptors", "threads",
/// "bus names", "bus match rules", "bus objects", and "X <kind>" for what the X server keeps.
using Figures = std::map<std::string, long>;

/// The name of the memory, the one figure that is allowed to waver.
inline constexpr const char* residentMemory = "resident KiB";

/// Waits until the program has come to rest and counts.
Figures figuresOf(desktop::Desktop& desktop, const desktop::Process& program);

}  // namespace soak
