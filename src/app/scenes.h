#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "ui/content_view.h"
#include "ui/permissions_window.h"

namespace app {

/// The program's windows as its scenes declare them: "main", the settings window, and
/// "permissions". Main thread, while a QApplication lives.
class Scenes {
  public:
    /// What the windows need. Asked for each time one is made; what it names outlives the window.
    struct Mediators {
        std::function<ui::ContentView::Mediator()> contentView;
        std::function<ui::PermissionsWindow::Mediator()> permissionsWindow;
    };
    explicit Scenes(Mediators mediators) : mediators_(std::move(mediators)) {}

    /// The window of a scene, not shown: its content, its identifier as object name, its title.
    /// Null for a scene that does not exist.
    [[nodiscard]] std::unique_ptr<QWidget> makeWindow(const std::string& sceneId) const;

  private:
    Mediators mediators_;
};

}  // namespace app
