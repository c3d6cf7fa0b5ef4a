#pragma once

#include <QWidget>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "ui/content_view.h"

namespace app {

/// The program's windows as its scenes declare them: "main", the settings window, and
/// "permissions". Main thread, while a QApplication lives.
class Scenes {
  public:
    /// `contentViewMediator` is asked each time the settings window is made; what it names outlives
    /// the window.
    explicit Scenes(std::function<ui::ContentView::Mediator()> contentViewMediator)
        : contentViewMediator_(std::move(contentViewMediator)) {}

    /// The window of a scene, not shown: its content, its identifier as object name, its title.
    /// Null for a scene that does not exist.
    [[nodiscard]] std::unique_ptr<QWidget> makeWindow(const std::string& sceneId) const;

  private:
    std::function<ui::ContentView::Mediator()> contentViewMediator_;
};

}  // namespace app
