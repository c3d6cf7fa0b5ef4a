#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <memory>
#include <vector>

#include "platform/x11/connection.h"
#include "platform/x11/window_list.h"

namespace platform::x11 {

/// Windows that the server keeps whole in pixmaps of their own for as long as this exists, where no
/// compositor has it do so. Main thread; must not outlive the connection.
///
/// A window that is redirected gets to paint itself anew. What others covered comes into its pixmap
/// as soon as its program does that, of which nothing tells.
class RedirectedWindows {
  public:
    /// Those windows of the process of which the screen does not show everything. Some round trips.
    static std::shared_ptr<const RedirectedWindows> ofProcess(Connection& connection,
                                                              std::int32_t processID);
    ~RedirectedWindows();
    RedirectedWindows(const RedirectedWindows&) = delete;
    RedirectedWindows& operator=(const RedirectedWindows&) = delete;

  private:
    RedirectedWindows(Connection& connection, std::vector<xcb_window_t> topLevels);

    Connection& connection_;
    std::vector<xcb_window_t> topLevels_;
};

/// The top-level windows of the process that others cover in part, or that reach over an edge of
/// `screen`. `windows` are those of the screen without the overlay, front to back.
[[nodiscard]] std::vector<xcb_window_t> coveredWindows(const std::vector<ListedWindow>& windows,
                                                       std::int32_t processID,
                                                       const NativeRect& screen);

}  // namespace platform::x11
