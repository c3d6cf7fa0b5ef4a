#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "base/displays.h"

namespace platform::macos {

/// The displays as the system lists them, the primary one first.
class CocoaDisplays final : public base::Displays {
  public:
    // Main thread, as every method here and the calls of the handler.
    CocoaDisplays();
    ~CocoaDisplays() override;
    CocoaDisplays(const CocoaDisplays&) = delete;
    CocoaDisplays& operator=(const CocoaDisplays&) = delete;

    [[nodiscard]] std::vector<base::Screen> screens() override;
    void setChangeHandler(std::function<void()> handler) override;

  private:
    struct Subscription;
    /// What the handler is called for. The system tells of brightness and colours too.
    struct Placement {
        base::DisplayID displayID = 0;
        base::Rect frame;
        double backingScaleFactor = 1.0;
        friend bool operator==(const Placement&, const Placement&) = default;
    };

    std::vector<Placement> placements();
    void screensChanged();

    std::function<void()> changeHandler_;
    std::vector<Placement> placements_;
    std::unique_ptr<Subscription> subscription_;
};

}  // namespace platform::macos
