#pragma once

#include "ui/login_item_service.h"

namespace platform::macos {

/// The main application as a login item of the system's service management.
class AppServiceLoginItem final : public ui::LoginItemService {
  public:
    // Main thread, as every method here.
    [[nodiscard]] ui::LoginItemStatus status() const override;
    base::Status registerItem() override;
    base::Status unregisterItem() override;
};

}  // namespace platform::macos
