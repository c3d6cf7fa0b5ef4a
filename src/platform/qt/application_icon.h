#pragma once

#include <QIcon>
#include <string>

#include "platform/qt/status_notifier_item.h"

namespace platform::qt {

/// The program's icon, for its windows and the tray: the pictures in the icon theme directory
/// `iconDirectory`, painted here where they are missing. Main thread.
QIcon applicationIcon(const std::string& iconDirectory);

/// How trays on the bus get the icon: by the name of the symbolic one, else as `icon`.
StatusNotifierItem::Picture symbolicIcon(const std::string& iconDirectory, const QIcon& icon);

}  // namespace platform::qt
