#pragma once

#include <functional>

#include "base/log.h"
#include "ui/login_item_service.h"

namespace ui {

/// The value of the switch "Run at startup".
enum class RunAtStartup { off, on };

/// The state behind the switch "Run at startup", for as long as one settings view lives. The system
/// holds the truth: it is read when the object is made, and a change that fails is undone. Main
/// thread.
class LoginItem {
  public:
    /// What it needs of the outside; everything outlives it.
    struct Mediator {
        LoginItemService& service;
        base::Log& log;
    };

    /// `onReverted` is called after a failed change, when the value is the old one again: the
    /// switch has to be set to it. It may call `setRunAtStartup` with that value.
    LoginItem(Mediator mediator, std::function<void(RunAtStartup value)> onReverted);

    [[nodiscard]] RunAtStartup runAtStartup() const { return runAtStartup_; }
    /// A change registers or unregisters the program; a value that is there already does nothing.
    void setRunAtStartup(RunAtStartup value);

  private:
    void update(RunAtStartup oldValue, RunAtStartup newValue);

    Mediator mediator_;
    std::function<void(RunAtStartup)> onReverted_;
    RunAtStartup runAtStartup_;
};

}  // namespace ui
