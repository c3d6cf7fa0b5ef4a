#pragma once

#include <chrono>

namespace latency {

/// Far more than the slowest program needs for one step on a busy machine.
inline constexpr std::chrono::milliseconds limit{15000};
/// Between two steps, for what programs and the server still do without being asked.
inline constexpr std::chrono::milliseconds pause{250};

}  // namespace latency
