#include "app/scenes.h"

namespace app {

std::unique_ptr<QWidget> Scenes::makeWindow(const std::string& sceneId) const {
    std::unique_ptr<QWidget> window;
    if (sceneId == "main") {
        window = std::make_unique<ui::ContentView>(mediators_.contentView());
        window->setWindowTitle(QStringLiteral("Lumaframe"));
    } else if (sceneId == "permissions") {
        window = std::make_unique<ui::PermissionsWindow>(mediators_.permissionsWindow());
        window->setWindowTitle(QStringLiteral("Permissions"));
    } else {
        return nullptr;
    }
    window->setObjectName(QString::fromStdString(sceneId));
    return window;
}

}  // namespace app
