#pragma once

#include <QString>

namespace desktop {

/// Prints what the tray icon of `service` says of itself, "<property>: <value>" a line; of its
/// pictures their widths. 0 on success.
int printTrayItem(const QString& service);

/// Asks `service`'s menu for what it does not have, and prints what each call came to.
int askMenuForNonsense(const QString& service);

}  // namespace desktop
