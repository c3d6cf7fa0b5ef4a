#include "platform/x11/late_requests.h"

#include <algorithm>
#include <utility>

namespace platform::x11 {

void LateRequests::add(std::function<void()> send) {
    if (held_.expired()) {
        send();
    } else {
        state_->waiting.push_back(std::move(send));
    }
}

LateRequests::Hold LateRequests::hold(Until until) {
    if (auto held = held_.lock()) {
        state_->until = std::max(state_->until, until);
        return held;
    }
    state_->until = until;
    Hold held(state_.get(), [state = std::weak_ptr(state_)](const void*) {
        if (const auto alive = state.lock()) {
            alive->sendAll();
        }
    });
    held_ = held;
    return held;
}

void LateRequests::noteClaim() {
    if (state_->until == Until::claimed) {
        state_->sendAll();
    }
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
