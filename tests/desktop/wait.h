#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace desktop {

/// How long a wait of a test may take before it counts as failed. Generous: it is only used up when
/// something is broken, or the machine is very busy.
inline constexpr std::chrono::milliseconds defaultLimit{15000};

/// Asks `condition` again and again, a millisecond apart, until it holds. False when `limit` has
/// passed first.
bool waitUntil(const std::function<bool()>& condition,
               std::chrono::milliseconds limit = defaultLimit);

/// As `waitUntil`, but throws std::runtime_error("<what> did not happen in time").
void require(const std::string& what, const std::function<bool()>& condition,
             std::chrono::milliseconds limit = defaultLimit);

/// Whether `condition` holds for the whole of `duration`: how a test says that something does not
/// happen.
bool staysTrue(const std::function<bool()>& condition, std::chrono::milliseconds duration);

}  // namespace desktop
