#include "platform/macos/app_service_login_item.h"

#import <ServiceManagement/ServiceManagement.h>

#include "platform/macos/foundation_error.h"

namespace platform::macos {

static_assert(static_cast<NSInteger>(ui::LoginItemStatus::notRegistered) ==
              SMAppServiceStatusNotRegistered);
static_assert(static_cast<NSInteger>(ui::LoginItemStatus::enabled) == SMAppServiceStatusEnabled);
static_assert(static_cast<NSInteger>(ui::LoginItemStatus::requiresApproval) ==
              SMAppServiceStatusRequiresApproval);
static_assert(static_cast<NSInteger>(ui::LoginItemStatus::notFound) == SMAppServiceStatusNotFound);

ui::LoginItemStatus AppServiceLoginItem::status() const {
    return static_cast<ui::LoginItemStatus>(SMAppService.mainAppService.status);
}

base::Status AppServiceLoginItem::registerItem() {
    NSError* error = nil;
    if (![SMAppService.mainAppService registerAndReturnError:&error]) {
        return localizedError(error);
    }
    return base::Nothing{};
}

base::Status AppServiceLoginItem::unregisterItem() {
    NSError* error = nil;
    if (![SMAppService.mainAppService unregisterAndReturnError:&error]) {
        return localizedError(error);
    }
    return base::Nothing{};
}

}  // namespace platform::macos
