#pragma once

#include <QWidget>
#include <vector>

#include "app/notification_center.h"
#include "app/settings_store.h"
#include "base/bundle.h"
#include "base/file_manager.h"
#include "base/permissions.h"
#include "ui/first_run.h"
#include "ui/looping_video_player.h"
#include "ui/permission_row.h"

namespace ui {

/// The panel that takes a person through the three permissions: what is granted, where to grant
/// the rest, and a film of how that is done. Shown for as long as its window is. Main thread.
class FirstRunModal final : public QWidget {
  public:
    /// What it needs of the outside; everything outlives it.
    struct Mediator {
        FirstRun::Mediator firstRun;
        LoopingVideoPlayer::Mediator video;
        base::Bundle bundle{};
    };
    explicit FirstRunModal(const Mediator& mediator);

  protected:
    /// Refreshes the status.
    void showEvent(QShowEvent* event) override;

  private:
    QWidget* makeVideo(const Mediator& mediator);
    QWidget* makePermissions();
    void showStatus();

    FirstRun firstRun_;
    std::vector<PermissionRow*> rows_;
    QWidget* action_;
};

}  // namespace ui
