#pragma once

#include <QWidget>

#include "ui/first_run.h"

namespace ui {

/// One permission: its name, and whether it is granted or else where to grant it. Main thread.
class PermissionRow final : public QWidget {
  public:
    /// `firstRun` outlives the row.
    PermissionRow(FirstRun& firstRun, Permission permission);

    /// Shows what the last refresh has found.
    void showStatus();

  private:
    QWidget* makeRefusal();

    FirstRun& firstRun_;
    Permission permission_;
    QWidget* granted_;
    QWidget* refusal_;
};

}  // namespace ui
