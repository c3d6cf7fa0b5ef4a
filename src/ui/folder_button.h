#pragma once

#include <QPushButton>

#include "app/settings_store.h"
#include "ui/setting_binding.h"

namespace ui {

/// A capsule that names the folder of a stored setting and, pressed, lets the user choose another
/// one; its object name is the setting's key. The setting's store outlives it. Main thread.
class FolderButton final : public QPushButton {
  public:
    explicit FolderButton(const SettingBinding<std::string>& path);

    /// Wide enough for the whole name, which is cut where there is only the least room.
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    /// What "Downloads" needs. A layout must leave it, whatever the folder's name.
    [[nodiscard]] QSize leastRoom() const;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void showPath();
    [[nodiscard]] QSize sizeFor(const QString& label) const;

    SettingBinding<std::string> path_;
    QString label_;
    app::SettingsStore::Observation observation_;
};

}  // namespace ui
