#pragma once

#include <cstdint>
#include <optional>

#include "platform/x11/native_geometry.h"

namespace platform::x11 {

/// How far something reaches over each edge of a rectangle, or inside it.
struct FrameExtents {
    std::int32_t left = 0;
    std::int32_t right = 0;
    std::int32_t top = 0;
    std::int32_t bottom = 0;
    friend bool operator==(const FrameExtents&, const FrameExtents&) = default;
};

/// Who draws the shadow of a window.
enum class ShadowSource {
    /// Nobody, or a compositor: it is not among the window's own pixels.
    none,
    /// The window, around what it shows (`_GTK_FRAME_EXTENTS`).
    window,
};

/// What people see as the window, in pixels of the screen.
struct WindowFrame {
    /// With the window manager's decoration, without shadow and without the invisible edges by
    /// which some window managers let a window be resized.
    NativeRect visible{};
    /// How far the top-level window reaches over it.
    FrameExtents margins{};
    /// How far it reaches over the program's own window; zeros where the window manager does not
    /// say.
    FrameExtents decoration{};
    ShadowSource shadow = ShadowSource::none;

    /// All of the child of the root window.
    [[nodiscard]] NativeRect topLevel() const;
    [[nodiscard]] bool hasDecoration() const { return decoration != FrameExtents{}; }
};

/// What is known of a window: all of it but `topLevel` comes from properties that may say anything.
struct WindowMeasures {
    /// The child of the root window, its border included.
    NativeRect topLevel{};
    /// The program's own window, where that is another one.
    std::optional<NativeRect> client{};
    /// Around the client (`_NET_FRAME_EXTENTS`), where the window manager says it.
    std::optional<FrameExtents> decoration{};
    /// Zeros for none.
    FrameExtents ownShadow{};
};

[[nodiscard]] WindowFrame frameOf(const WindowMeasures& measures);

/// `frame` without `extents`; all of it where they cannot be right.
[[nodiscard]] NativeRect visiblePart(const NativeRect& frame, const FrameExtents& extents);

}  // namespace platform::x11
