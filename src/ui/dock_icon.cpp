#include "ui/dock_icon.h"

#include <utility>

namespace ui {

DockIcon::DockIcon(const SettingBinding<bool>& hideDockIcon, app::Application& application)
    : hideDockIcon_(hideDockIcon),
      application_(application),
      isHidden_(hideDockIcon.value()),
      observation_(hideDockIcon.observe([this] { applyChange(); })) {}

void DockIcon::applyChange() {
    const bool isHidden = hideDockIcon_.value();
    if (std::exchange(isHidden_, isHidden) != isHidden) {
        application_.setActivationPolicy(isHidden ? app::ActivationPolicy::accessory
                                                  : app::ActivationPolicy::regular);
    }
}

}  // namespace ui
