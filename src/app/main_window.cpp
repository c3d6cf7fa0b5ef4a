#include "app/main_window.h"

namespace app {

void showMainWindow(Windows& windows) {
    windows.activate();
    for (const Window& window : windows.windows()) {
        if (window.identifier.find("main") != std::string::npos) {
            windows.makeKeyAndOrderFront(window.handle);
            return;
        }
    }
    windows.openScene("main");
}

}  // namespace app
