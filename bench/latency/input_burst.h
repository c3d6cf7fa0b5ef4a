#pragma once

#include <cstdint>
#include <vector>

#include "desktop/input_driver.h"
#include "desktop/x_client.h"

namespace latency {

/// Keys and pointer through XTEST, several of them sent at once: what happens on a key press is
/// not delayed by waiting for the release.
class InputBurst {
  public:
    explicit InputBurst(const std::string& displayName);

    InputBurst& press(std::uint8_t keyCode);
    InputBurst& release(std::uint8_t keyCode);
    /// Presses in the given order, releases in reverse.
    InputBurst& chord(const std::vector<std::uint8_t>& keyCodes);
    InputBurst& moveTo(desktop::Place place);
    InputBurst& pressButton();
    InputBurst& releaseButton();
    /// Sends it all; the moment before it left.
    double send();
    /// Waits until the server has carried out what was sent.
    void settle() { client_.synchronize(); }

  private:
    InputBurst& fake(std::uint8_t type, std::uint8_t detail, desktop::Place place = {});

    desktop::XClient client_;
};

}  // namespace latency
