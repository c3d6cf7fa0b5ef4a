#include "platform/qt/screen_scale.h"

#include <QGuiApplication>
#include <QScreen>

namespace platform::qt {

std::optional<double> scaleFactorOfMonitor(const std::string& monitorName) {
    const QString name = QString::fromStdString(monitorName);
    for (const QScreen* screen : QGuiApplication::screens()) {
        if (screen->name() == name) {
            return screen->devicePixelRatio();
        }
    }
    return std::nullopt;
}

}  // namespace platform::qt
