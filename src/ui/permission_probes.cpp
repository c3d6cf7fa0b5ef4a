#include "ui/permission_probes.h"

namespace ui {

bool isDownloadsReadable(const base::FileManager& fileManager) {
    const auto downloads = fileManager.downloadsDirectories();
    return !downloads.empty() && fileManager.isReadableFolder(downloads.front());
}

bool PermissionProbes::isEverythingGranted() const {
    return permissions.canCaptureScreen() && permissions.isAccessibilityTrusted() &&
           isDownloadsReadable(fileManager);
}

}  // namespace ui
