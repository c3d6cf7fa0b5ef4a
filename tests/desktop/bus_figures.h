#pragma once

#include <QString>

namespace desktop {

/// Prints what the bus keeps for the owner of `service`, and what that one shows on the bus:
/// "names <count>", "match rules <count>", "objects <count>". 0 on success.
int printBusFigures(const QString& service);

}  // namespace desktop
