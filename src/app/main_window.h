#pragma once

#include "app/windows.h"

namespace app {

/// Brings the program and its settings window to the front. The first open window whose identifier
/// contains "main" is the settings window; without one the scene "main" is opened.
void showMainWindow(Windows& windows);

}  // namespace app
