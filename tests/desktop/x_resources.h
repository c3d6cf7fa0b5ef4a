#pragma once

#include <sys/types.h>

#include <cstdint>
#include <map>
#include <string>

#include "desktop/x_client.h"

namespace desktop {

/// What the X server keeps for all connections of the process: how many of each kind ("WINDOW",
/// "PIXMAP", "PICTURE", ...).
std::map<std::string, std::uint32_t> resourcesOf(const XClient& client, pid_t process);

}  // namespace desktop
