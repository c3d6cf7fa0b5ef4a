#pragma once

#include "app/windows.h"
#include "ui/permission_probes.h"

namespace ui {

/// Opens the permissions window while something is missing. Main thread.
class PermissionCheck {
  public:
    /// What it needs of the outside; everything outlives it.
    struct Mediator {
        const base::Permissions& permissions;
        const base::FileManager& fileManager;
        app::Windows& windows;
    };
    explicit PermissionCheck(Mediator mediator) : mediator_(mediator) {}

    void run();

  private:
    Mediator mediator_;
};

}  // namespace ui
