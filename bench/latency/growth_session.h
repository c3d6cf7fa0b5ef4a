#pragma once

#include <filesystem>

#include "latency/busy_desktop.h"
#include "latency/samples.h"

namespace latency {

/// Opens the overlay on one to eight displays and on ones of 1080p to 8K, each arrangement on a
/// desktop of its own, and puts down how the waits and the memory grow: of the program, and of the
/// X server, which holds the windows and the snapshots.
void measureGrowth(const std::filesystem::path& lumaframe, desktop::Compositor compositor,
                   Samples& samples);

}  // namespace latency
