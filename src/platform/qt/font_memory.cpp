#include "platform/qt/font_memory.h"

#include <QApplication>
#include <QFont>
#include <QWidget>
#include <algorithm>

namespace platform::qt {

void giveFontsBack() {
    const auto windows = QApplication::topLevelWidgets();
    if (std::ranges::none_of(windows, [](const QWidget* window) { return window->isVisible(); })) {
        // What the toolkit does at its own end. A font that lives on notices that its cache is
        // another one and looks itself up again.
        QFont::cleanup();
    }
}

}  // namespace platform::qt
