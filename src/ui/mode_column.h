#pragma once

#include <QWidget>
#include <string>

#include "app/notification_center.h"
#include "shortcuts/key_monitor.h"
#include "ui/mode_shortcut.h"
#include "ui/setting_binding.h"

namespace ui {

/// The options of one mode: its shortcut, and what becomes of its result. Main thread.
class ModeColumn final : public QWidget {
  public:
    struct Content {
        QString title;
        ModeShortcut shortcut;
        SettingBinding<bool> save;
        SettingBinding<std::string> savePath;
        SettingBinding<bool> copy;
    };
    /// `keyMonitor` outlives the object.
    ModeColumn(const Content& content, shortcuts::KeyMonitor& keyMonitor);

    /// As wide as its widest row with the folder "Downloads": a long folder name is cut instead of
    /// changing the window.
    [[nodiscard]] QSize sizeHint() const override;

  private:
    QWidget* makeRecorder(const Content& content, shortcuts::KeyMonitor& keyMonitor);

    app::NotificationCenter::Observation shortcutChanges_;
};

}  // namespace ui
