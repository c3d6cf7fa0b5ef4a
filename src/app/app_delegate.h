#pragma once

#include "app/application.h"
#include "app/settings_store.h"
#include "base/file_manager.h"
#include "base/permissions.h"

namespace app {

/// Answers the end of the launch. Main thread.
class AppDelegate {
  public:
    /// What it needs of the outside; everything outlives it.
    struct Mediator {
        SettingsStore& settings;
        base::Permissions& permissions;
        base::FileManager& fileManager;
        Application& application;
    };
    explicit AppDelegate(Mediator mediator) : mediator_(mediator) {}

    /// Registers the default settings, touches the protected resources once and applies the policy
    /// of the Dock icon, in this order.
    void applicationDidFinishLaunching();

  private:
    void probePermissions();

    Mediator mediator_;
};

}  // namespace app
