#pragma once

#include <QIcon>
#include <string>

namespace platform::qt {

/// The picture of the tray icon: the application's from the icon theme directory `iconDirectory`,
/// painted here where that is missing. Main thread.
QIcon trayIconImage(const std::string& iconDirectory);

}  // namespace platform::qt
