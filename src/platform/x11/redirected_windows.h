#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/x11/connection.h"
#include "platform/x11/window_list.h"

namespace platform::x11 {

/// A window of the application in front as it was when the overlay opened.
struct KeptWindow {
    xcb_window_t topLevel = XCB_WINDOW_NONE;
    WindowFrame frame;
    /// What the screen showed of its top-level window.
    std::vector<NativeRect> visibleParts;

    /// Whether that is everything.
    [[nodiscard]] bool isWhole() const;
};

/// Windows that the server keeps whole in pixmaps of their own for as long as this exists, where no
/// compositor has it do so. Main thread; must not outlive the connection.
///
/// A window that is redirected gets to paint itself anew. What others covered comes into its pixmap
/// as soon as its program does that, of which nothing tells. What showed is blank there until then,
/// too; of that the overlay's snapshot has the pixels.
class RedirectedWindows {
  public:
    /// The windows of the process; those of which the screen does not show everything are
    /// redirected. `displays` are those whose snapshots hide the screen. Some round trips.
    static std::shared_ptr<const RedirectedWindows> ofProcess(
        Connection& connection, std::int32_t processID, const std::vector<NativeRect>& displays);
    ~RedirectedWindows();
    RedirectedWindows(const RedirectedWindows&) = delete;
    RedirectedWindows& operator=(const RedirectedWindows&) = delete;

    /// None when it was none of them.
    [[nodiscard]] const KeptWindow* find(xcb_window_t topLevel) const;

  private:
    RedirectedWindows(Connection& connection, std::vector<KeptWindow> windows);

    Connection& connection_;
    std::vector<KeptWindow> windows_;
};

/// The windows of the process with what `displays` show of them behind those in front of them.
/// `windows` are those of the screen without the overlay, front to back.
[[nodiscard]] std::vector<KeptWindow> windowsToKeep(const std::vector<ListedWindow>& windows,
                                                    std::int32_t processID,
                                                    const std::vector<NativeRect>& displays);

}  // namespace platform::x11
