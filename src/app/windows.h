#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace app {

/// Whether the windows of the program show in the task bar and the window switcher.
enum class ActivationPolicy { regular = 0, accessory = 1 };

using WindowHandle = std::uint64_t;

/// One open window of this program.
struct Window {
    WindowHandle handle = 0;
    /// Empty for a window without an identifier.
    std::string identifier;
};

/// The windows and the activation of this program. Main thread.
class Windows {
  public:
    virtual ~Windows() = default;
    /// The open windows, in the order in which they were opened.
    [[nodiscard]] virtual std::vector<Window> windows() const = 0;
    /// Brings the program to the front, ignoring other applications.
    virtual void activate() = 0;
    /// Makes an open window key and orders it front; a handle that is gone is ignored.
    virtual void makeKeyAndOrderFront(WindowHandle handle) = 0;
    /// Opens the scene "main" or "permissions"; one that is open already is brought forward.
    virtual void openScene(const std::string& sceneId) = 0;
    virtual void setActivationPolicy(ActivationPolicy policy) = 0;
    /// Ends the program with exit status 0, in a later turn of the main queue.
    virtual void terminate() = 0;
};

}  // namespace app
