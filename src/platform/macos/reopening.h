#pragma once

#include <functional>
#include <memory>

namespace platform::macos {

/// Tells when the user starts the program again, or clicks its Dock icon: the system activates the
/// process that runs. To be made before the toolkit, which keeps the delegate that it finds and
/// passes on what is none of its own.
class Reopening {
  public:
    // Main thread, as every method here.
    Reopening();
    ~Reopening();
    Reopening(const Reopening&) = delete;
    Reopening& operator=(const Reopening&) = delete;

    /// `onReopen` is called on the main thread.
    void setHandler(std::function<void()> onReopen);

  private:
    struct Delegate;
    std::unique_ptr<Delegate> delegate_;
};

}  // namespace platform::macos
