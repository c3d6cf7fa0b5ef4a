#pragma once

#include "app/settings_store.h"
#include "ui/check_box.h"
#include "ui/setting_binding.h"

namespace ui {

/// A check box that shows and sets a stored setting; its object name is the setting's key. The
/// setting's store outlives it. Main thread.
class BoundCheckBox final : public CheckBox {
  public:
    BoundCheckBox(const QString& label, const SettingBinding<bool>& setting);

  private:
    SettingBinding<bool> setting_;
    app::SettingsStore::Observation observation_;
};

}  // namespace ui
