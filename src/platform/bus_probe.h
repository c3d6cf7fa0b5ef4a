#pragma once

#include <chrono>
#include <string>

namespace platform {

/// Whether a message bus answers at `address` within `limit`. Asked before the bus library connects
/// because that waits without end for a bus that takes the connection and then says nothing, and
/// the start of the program with it.
///
/// Judges an address that is one local socket; of any other kind it expects the best. Any thread.
bool busAnswers(const std::string& address, std::chrono::milliseconds limit);

}  // namespace platform
