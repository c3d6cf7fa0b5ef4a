#pragma once

#include <QIcon>
#include <string>

namespace platform::qt {

/// The program's icon, for its windows and the tray: the pictures in the icon theme directory
/// `iconDirectory`, painted here where they are missing. Main thread.
QIcon applicationIcon(const std::string& iconDirectory);

}  // namespace platform::qt
