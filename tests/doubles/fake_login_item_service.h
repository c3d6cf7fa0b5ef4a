#pragma once

#include <optional>

#include "base/result.h"
#include "doubles/call_log.h"
#include "ui/login_item_service.h"

namespace doubles {

/// A list of login items with one place. `error` makes every change fail and leave the status.
/// In a call log: "login item register", "login item unregister".
class FakeLoginItemService final : public ui::LoginItemService, public Recorder {
  public:
    [[nodiscard]] ui::LoginItemStatus status() const override { return current; }
    base::Status registerItem() override {
        record("login item register");
        return change(ui::LoginItemStatus::enabled);
    }
    base::Status unregisterItem() override {
        record("login item unregister");
        return change(ui::LoginItemStatus::notRegistered);
    }

    ui::LoginItemStatus current = ui::LoginItemStatus::notRegistered;
    std::optional<base::Error> error;

  private:
    base::Status change(ui::LoginItemStatus status) {
        if (error) {
            return *error;
        }
        current = status;
        return base::Nothing{};
    }
};

}  // namespace doubles
