#pragma once

#include "base/result.h"

namespace ui {

/// What the system says about the program's login item. Only `enabled` starts the program at
/// log-in.
enum class LoginItemStatus {
    notRegistered = 0,
    enabled = 1,
    /// There is an item, which the user has switched off in the system's own settings.
    requiresApproval = 2,
    /// There is an item, whose program is not there.
    notFound = 3,
};

/// The system's list of programs that it starts when the user logs in; this program's place in it.
/// Main thread.
class LoginItemService {
  public:
    virtual ~LoginItemService() = default;
    /// As the system has it now. Without side effects.
    [[nodiscard]] virtual LoginItemStatus status() const = 0;
    /// Makes the system start the running program at each log-in, also when the user has switched
    /// the item off elsewhere. The error is one sentence for the user; then nothing has changed.
    virtual base::Status registerItem() = 0;
    /// Takes that back; without an item this succeeds. Errors as above.
    virtual base::Status unregisterItem() = 0;
};

}  // namespace ui
