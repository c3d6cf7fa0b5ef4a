#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace platform::macos {

/// A completion for a callback that comes on a thread of the system's choosing, late or never. It
/// runs on the main thread in a later turn, and what it holds is let go of there, wherever the
/// copies of this are dropped. Copies may be made, called and dropped on any thread.
template <typename... Arguments>
class MainThreadCompletion {
  public:
    using Function = std::function<void(Arguments...)>;
    /// Runs a task once on the main thread in a later turn; any thread.
    using Post = void (*)(std::function<void()> task);

    MainThreadCompletion(Post post, Function completion)
        : post_(post),
          // Shared, because the system copies and drops its callback as it likes.
          completion_(new Function(std::move(completion)),
                      [post](Function* function) { post([function] { delete function; }); }) {}

    void operator()(Arguments... arguments) const {
        post_([completion = completion_, ... given = std::move(arguments)] {
            (*completion)(given...);
        });
    }

  private:
    Post post_;
    std::shared_ptr<Function> completion_;
};

}  // namespace platform::macos
