#pragma once

#include <memory>
#include <span>
#include <string>

#include "base/result.h"
#include "platform/running_platform.h"
#include "platform/session.h"

namespace platform {

/// How well a system fits the session.
enum class Rank {
    unsupported,
    /// Works, but something that belongs to the program is missing.
    possible,
    best,
};

struct Probe {
    Rank rank = Rank::unsupported;
    /// Why, as the end of a sentence: "$DISPLAY is not set".
    std::string reason;
};

/// One system that is compiled in.
struct System {
    std::string name;
    Probe (*probe)(const Session& session);
    /// Once per process.
    base::Result<std::unique_ptr<RunningPlatform>> (*create)(const StartOptions& options);
};

/// The systems compiled in, the preferred ones first.
std::span<const System> compiledSystems();

/// The system with the best rank, of equals the first. The error is one sentence that holds the
/// reason of every system.
base::Result<System> selectPlatform(std::span<const System> systems, const Session& session);

}  // namespace platform
