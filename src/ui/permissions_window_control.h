#pragma once

#include <optional>

#include "app/notification_center.h"
#include "app/windows.h"
#include "base/alive.h"
#include "base/main_queue.h"

namespace ui {

/// Keeps the permissions window in front while it is open, and closes it when that is asked for.
/// The window is known by its identifier: the first of the program's windows that has
/// "permissions" in it. Main thread.
class PermissionsWindowControl {
  public:
    /// What it needs of the outside; everything outlives it.
    struct Mediator {
        app::Windows& windows;
        base::MainQueue& mainQueue;
        app::NotificationCenter& notifications;
    };
    explicit PermissionsWindowControl(Mediator mediator);

    /// To be called when the window is shown. In a later turn of the main queue, when the window
    /// exists, it floats and comes to the front, and so does the program, window or not.
    void noteShown();

  private:
    void raise();
    void closeWindow();
    [[nodiscard]] std::optional<app::WindowHandle> find() const;

    Mediator mediator_;
    base::Alive alive_;
    app::NotificationCenter::Observation closing_;
};

}  // namespace ui
