#pragma once

#include <memory>

#include "app/application.h"
#include "app/notification_center.h"

namespace platform::macos {

/// This program as the system's shared application; tells the program's own notification centre
/// when it becomes active.
class CocoaApplication final : public app::Application {
  public:
    // Main thread, as every method here.
    /// `notificationCenter` outlives the object.
    explicit CocoaApplication(app::NotificationCenter& notificationCenter);
    ~CocoaApplication() override;
    CocoaApplication(const CocoaApplication&) = delete;
    CocoaApplication& operator=(const CocoaApplication&) = delete;

    void setActivationPolicy(app::ActivationPolicy policy) override;
    void terminate() override;

  private:
    struct Subscription;
    std::unique_ptr<Subscription> subscription_;
};

}  // namespace platform::macos
