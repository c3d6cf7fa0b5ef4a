#pragma once

namespace app {

/// Whether the windows of the program show in the task bar and the window switcher.
enum class ActivationPolicy { regular = 0, accessory = 1 };

/// This program among the others of the session. Main thread.
class Application {
  public:
    virtual ~Application() = default;
    virtual void setActivationPolicy(ActivationPolicy policy) = 0;
    /// Ends the program with exit status 0, in a later turn of the main queue.
    virtual void terminate() = 0;
};

}  // namespace app
