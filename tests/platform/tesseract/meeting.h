#pragma once

#include <chrono>
#include <future>

namespace platform::tesseract {

/// Where two threads wait for each other, once.
class Meeting {
  public:
    /// `side` is 0 for one of them and 1 for the other. False when the other one does not come.
    bool await(int side) {
        constexpr std::chrono::seconds limit{20};
        sides_[side].set_value();
        return others_[side].wait_for(limit) == std::future_status::ready;
    }

  private:
    std::promise<void> sides_[2];
    std::future<void> others_[2] = {sides_[1].get_future(), sides_[0].get_future()};
};

}  // namespace platform::tesseract
