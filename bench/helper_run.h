#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "base/result.h"

namespace bench {

/// What the recognition helper costs from its start to its first answer, and what it leaves behind
/// in the program that uses it.
struct FirstUse {
    /// Processor time of the helper from its birth on, a single word read: milliseconds.
    double cpu = 0;
    /// Resident memory of this process before the helper was started and after it ended: bytes.
    long residentBefore = 0;
    long residentAfter = 0;
};

/// Has `picture` read by a helper of its own, as the resident program does it, for a user whose
/// locale is `locale`.
base::Result<FirstUse> measureFirstUse(const std::filesystem::path& helper,
                                       const std::string& locale,
                                       const std::filesystem::path& picture);

}  // namespace bench
