#include "platform/bus_probe.h"

namespace platform {

/// Any thread.
bool busAnswers(const std::string& /*address*/, std::chrono::milliseconds /*limit*/) {
    return false;
}

}  // namespace platform
