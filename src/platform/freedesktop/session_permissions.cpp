#include "platform/freedesktop/session_permissions.h"

namespace platform::freedesktop {

void SessionPermissions::openSettingsPage(const std::string& /*url*/) {}

}  // namespace platform::freedesktop
