#pragma once

#include <functional>
#include <memory>
#include <vector>

namespace platform::x11 {

/// Requests that the server takes long for and nobody waits for. While a picture is on its way they
/// are kept back, since the server carries out what one program asks for in its order: the end of
/// an overlay over a 4K display costs it 5 to 8 ms, in which the clipboard would not be owned, the
/// threads that encode the picture would lack a processor, and nobody could paste. Main thread.
class LateRequests {
  public:
    /// While one of these lives requests are kept back.
    using Hold = std::shared_ptr<const void>;

    /// What a hold is for.
    enum class Until { claimed, delivered };

    /// Calls `send` at once, or, while there is a hold, when the last one ends or `sendAll` is
    /// called.
    void add(std::function<void()> send);
    [[nodiscard]] Hold hold(Until until = Until::delivered);
    /// The clipboard is owned: nothing is kept back any longer unless a hold is for the whole
    /// delivery.
    void noteClaim();
    /// Whatever the holds are for.
    void sendAll();

  private:
    struct State {
        std::vector<std::function<void()>> waiting;
        /// Of the holds that there are, the longest.
        Until until = Until::claimed;
        void sendAll();
    };
    /// Outlived by holds.
    std::shared_ptr<State> state_ = std::make_shared<State>();
    std::weak_ptr<const void> held_;
};

}  // namespace platform::x11
