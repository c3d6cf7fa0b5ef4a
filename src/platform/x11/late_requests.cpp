#include "platform/x11/late_requests.h"

#include <utility>

namespace platform::x11 {

void LateRequests::add(std::function<void()> send) {
    if (held_.expired()) {
        send();
    } else {
        state_->waiting.push_back(std::move(send));
    }
}

LateRequests::Hold LateRequests::hold() {
    if (auto held = held_.lock()) {
        return held;
    }
    Hold held(state_.get(), [state = std::weak_ptr(state_)](const void*) {
        if (const auto alive = state.lock()) {
            alive->sendAll();
        }
    });
    held_ = held;
    return held;
}

void LateRequests::sendAll() {
    state_->sendAll();
}

void LateRequests::State::sendAll() {
    for (const auto& send : std::exchange(waiting, {})) {
        send();
    }
}

}  // namespace platform::x11
