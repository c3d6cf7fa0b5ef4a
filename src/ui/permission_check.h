#pragma once

#include "app/windows.h"
#include "base/file_manager.h"
#include "base/permissions.h"

namespace ui {

/// Whether the user's first Downloads folder can be read; false without one.
bool isDownloadsReadable(const base::FileManager& fileManager);

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

    /// Asks for the screen, then the keyboard, then the files; what comes after a missing one is
    /// not asked for. Nothing prompts.
    void run();

  private:
    [[nodiscard]] bool isEverythingGranted() const;

    Mediator mediator_;
};

}  // namespace ui
