#pragma once

#include "app/application.h"
#include "app/settings_store.h"
#include "ui/setting_binding.h"

namespace ui {

/// Makes each change of the setting "Hide dock icon" count at once, whoever makes it, for as long
/// as the object lives. Main thread.
class DockIcon {
  public:
    /// Applies nothing: the value of the moment was applied at the launch. `application` outlives
    /// the object.
    DockIcon(const SettingBinding<bool>& hideDockIcon, app::Application& application);
    DockIcon(const DockIcon&) = delete;
    DockIcon& operator=(const DockIcon&) = delete;

  private:
    void applyChange();

    SettingBinding<bool> hideDockIcon_;
    app::Application& application_;
    bool isHidden_;
    app::SettingsStore::Observation observation_;
};

}  // namespace ui
