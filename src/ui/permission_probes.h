#pragma once

#include "base/file_manager.h"
#include "base/permissions.h"

namespace ui {

/// Whether the user's first Downloads folder can be read; false without one.
bool isDownloadsReadable(const base::FileManager& fileManager);

/// The three permissions that the program needs, asked for afresh at each call. Nothing prompts.
/// What it names outlives it. Main thread.
struct PermissionProbes {
    const base::Permissions& permissions;
    const base::FileManager& fileManager;

    /// Asks for the screen, then the keyboard, then the files; what comes after a missing one is
    /// not asked for.
    [[nodiscard]] bool isEverythingGranted() const;
};

}  // namespace ui
