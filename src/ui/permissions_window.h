#pragma once

#include <QWidget>

#include "ui/first_run_modal.h"
#include "ui/permissions_window_control.h"

namespace ui {

/// The content of the permissions window, which floats above other windows. Main thread.
class PermissionsWindow final : public QWidget {
  public:
    /// What it needs of the outside; everything outlives it.
    struct Mediator {
        FirstRunModal::Mediator panel;
        PermissionsWindowControl::Mediator control;
    };
    explicit PermissionsWindow(const Mediator& mediator);

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    PermissionsWindowControl control_;
};

}  // namespace ui
