#pragma once

#include <cstdint>

#include "app/windows.h"

/// What the toolkit cannot ask of its windows by itself. `view` is what the toolkit calls a
/// window's identifier: its view. Main thread, as every function here.
namespace platform::macos {

/// Activates the program, ignoring other applications, and makes the window key and orders it
/// front.
void activateWindow(std::uintptr_t view);
void setWindowLevel(std::uintptr_t view, app::WindowLevel level);
/// The window keeps its buttons and shows neither title nor title bar.
void hideTitleBar(std::uintptr_t view);
/// Lets what lies behind the window shine through under its view and its title bar. The view has to
/// leave its ground clear.
void showMaterialBehind(std::uintptr_t view);

}  // namespace platform::macos
