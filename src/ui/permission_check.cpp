#include "ui/permission_check.h"

namespace ui {

bool isDownloadsReadable(const base::FileManager& fileManager) {
    const auto downloads = fileManager.downloadsDirectories();
    return !downloads.empty() && fileManager.isReadable(downloads.front());
}

void PermissionCheck::run() {
    if (!isEverythingGranted()) {
        mediator_.windows.openScene("permissions");
    }
}

bool PermissionCheck::isEverythingGranted() const {
    return mediator_.permissions.canCaptureScreen() &&
           mediator_.permissions.isAccessibilityTrusted() &&
           isDownloadsReadable(mediator_.fileManager);
}

}  // namespace ui
