#pragma once

#include <memory>
#include <utility>

namespace base {

/// Makes the callbacks of an object safe to keep: what `guard` returns does nothing once the object
/// that holds this member is gone. The calls and the destruction happen on one thread.
class Alive {
  public:
    template <typename Callback>
    [[nodiscard]] auto guard(Callback callback) const {
        return [token = std::weak_ptr<const char>(token_),
                callback = std::move(callback)](auto&&... arguments) mutable {
            if (!token.expired()) {
                callback(std::forward<decltype(arguments)>(arguments)...);
            }
        };
    }

  private:
    std::shared_ptr<const char> token_ = std::make_shared<const char>('\0');
};

}  // namespace base
