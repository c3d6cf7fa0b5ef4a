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

    std::function<void()> changeHandler_;
    std::unique_ptr<Subscription> subscription_;
};

}  // namespace platform::macos
