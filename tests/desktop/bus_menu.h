#pragma once

#include <QString>

namespace desktop {

/// Prints the labels of the first level of the menu that `service` exports at /MenuBar, one a
/// line, "-" for a separator, mnemonic marks taken out. 0 on success.
int printMenu(const QString& service);

/// Sends the "clicked" event to the item with the label. 0 on success.
int clickMenuItem(const QString& service, const QString& label);

}  // namespace desktop
