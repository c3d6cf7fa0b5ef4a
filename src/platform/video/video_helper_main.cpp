#include <cstdlib>

#include "platform/video/video_helper.h"

/// Started by Lumaframe alone: there is nothing here for a person to run.
int main() {
    // Without the destructors: the memory goes with the process.
    std::_Exit(platform::video::runVideoHelper());
}
