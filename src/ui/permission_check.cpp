#include "ui/permission_check.h"

namespace ui {

void PermissionCheck::run() {
    const PermissionProbes probes{mediator_.permissions, mediator_.fileManager};
    if (!probes.isEverythingGranted()) {
        mediator_.windows.openScene("permissions");
    }
}

}  // namespace ui
