#pragma once

#include "app/settings_store.h"

namespace app {

/// Registers the eight values that hold until the user has written their keys. First step of every
/// launch, since registered values are never persisted.
void registerDefaultSettings(SettingsStore& settings);

}  // namespace app
