#pragma once

#include <xcb/xcb.h>

#include <map>
#include <optional>
#include <vector>

#include "platform/x11/connection.h"
#include "platform/x11/native_geometry.h"

namespace platform::x11 {

/// A child of the root window that can be seen, now or when it is mapped.
struct TopLevel {
    xcb_window_t id = XCB_WINDOW_NONE;
    /// Its border included.
    NativeRect frame{};
    enum class Mapping { unmapped, mapped } mapping = Mapping::unmapped;
    enum class Override { none, redirect } override = Override::none;
};

/// The children of the root window, bottom to top, without those that only take input. Two round
/// trips.
[[nodiscard]] std::vector<TopLevel> topLevels(Connection& connection);

/// For each of `windows` that still exists the one of `topLevels` that it is or lies in. A round
/// trip for each level of the deepest.
[[nodiscard]] std::map<xcb_window_t, xcb_window_t> topLevelsOf(
    Connection& connection, const std::vector<xcb_window_t>& windows,
    const std::vector<TopLevel>& topLevels);

/// The order of `windows` (bottom to top, their own order kept) with those of `others` put in where
/// they lie in `stack`: each above the windows that it covers. `stack` holds the top-level windows,
/// `topLevelOf` names them for `windows`, `others` are top-level themselves.
[[nodiscard]] std::vector<xcb_window_t> mergeStacking(
    const std::vector<xcb_window_t>& windows, const std::vector<xcb_window_t>& others,
    const std::vector<xcb_window_t>& stack, const std::map<xcb_window_t, xcb_window_t>& topLevelOf);

}  // namespace platform::x11
