#pragma once

namespace platform {

/// Whether a look at a queue of events found one and handed it on.
enum class Dispatch { done, nothing };

}  // namespace platform
