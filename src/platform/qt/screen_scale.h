#pragma once

#include <optional>
#include <string>

namespace platform::qt {

/// How many native pixels one point is on the monitor that the window system calls `monitorName`;
/// none when the toolkit does not know the monitor. Main thread, while a QGuiApplication lives.
std::optional<double> scaleFactorOfMonitor(const std::string& monitorName);

}  // namespace platform::qt
