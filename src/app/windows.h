#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace app {

/// What a window lies above: a floating one is above every normal one, of other programs too.
enum class WindowLevel { normal = 0, floating = 3 };

using WindowHandle = std::uint64_t;

/// One open window of this program.
struct Window {
    WindowHandle handle = 0;
    /// Empty for a window without an identifier.
    std::string identifier;
};

/// The windows of this program. Main thread.
class Windows {
  public:
    virtual ~Windows() = default;
    /// The open windows, in the order in which they were opened.
    [[nodiscard]] virtual std::vector<Window> windows() const = 0;
    /// Brings the program to the front, ignoring other applications. Which of its windows is in
    /// front of the others stays as it is.
    virtual void activate() = 0;
    /// Makes an open window key and orders it front; a handle that is gone is ignored.
    virtual void makeKeyAndOrderFront(WindowHandle handle) = 0;
    /// Opens the scene "main" or "permissions"; one that is open already is brought forward.
    virtual void openScene(const std::string& sceneId) = 0;
    // A handle that is gone is ignored by both.
    virtual void setLevel(WindowHandle handle, WindowLevel level) = 0;
    virtual void close(WindowHandle handle) = 0;
};

}  // namespace app
