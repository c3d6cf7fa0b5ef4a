#pragma once

#include <functional>
#include <utility>
#include <vector>

#include "base/displays.h"

namespace doubles {

/// The displays that the test puts there; one of 1920 x 1080 points at first.
class FakeDisplays final : public base::Displays {
  public:
    std::vector<base::Screen> screens() override {
        ++readCount;
        return list;
    }
    void setChangeHandler(std::function<void()> handler) override { handler_ = std::move(handler); }

    /// Another arrangement of the displays, told to whoever listens.
    void change(std::vector<base::Screen> screens) {
        list = std::move(screens);
        if (handler_) {
            const auto handler = handler_;
            handler();
        }
    }
    [[nodiscard]] bool hasChangeHandler() const { return handler_ != nullptr; }

    std::vector<base::Screen> list{{1, {{0, 0}, {1920, 1080}}, 1.0, nullptr}};
    int readCount = 0;

  private:
    std::function<void()> handler_;
};

}  // namespace doubles
