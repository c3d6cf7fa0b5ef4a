#include "ui/permissions_window_control.h"

namespace ui {

PermissionsWindowControl::PermissionsWindowControl(Mediator mediator)
    : mediator_(mediator),
      closing_(mediator.notifications.observe(app::closePermissionsWindowNotification,
                                              [this] { closeWindow(); })) {}

void PermissionsWindowControl::noteShown() {
    mediator_.mainQueue.post(alive_.guard([this] { raise(); }));
}

void PermissionsWindowControl::raise() {
    if (const auto window = find()) {
        mediator_.windows.setLevel(*window, app::WindowLevel::floating);
        mediator_.windows.makeKeyAndOrderFront(*window);
    }
    mediator_.windows.activate();
}

void PermissionsWindowControl::closeWindow() {
    if (const auto window = find()) {
        mediator_.windows.close(*window);
    }
}

std::optional<app::WindowHandle> PermissionsWindowControl::find() const {
    for (const app::Window& window : mediator_.windows.windows()) {
        if (window.identifier.find("permissions") != std::string::npos) {
            return window.handle;
        }
    }
    return std::nullopt;
}

}  // namespace ui
