#pragma once

#include <string>
#include <vector>

#include "latency/busy_desktop.h"
#include "latency/file_watch.h"
#include "latency/samples.h"

namespace latency {

/// A command that takes a picture of the whole screen, or of the region 1280x800 at (1400, 300),
/// without asking, and writes it into a file. `{file}` stands for it.
struct OneShot {
    std::string program;
    std::vector<std::string> whole;
    std::vector<std::string> region{};
};

std::vector<OneShot> oneShots();

/// Runs it to its end: wall time until its file is closed, processor time, bytes.
void measureOneShot(const OneShot& shot, BusyDesktop& desktop, Samples& samples);

}  // namespace latency
