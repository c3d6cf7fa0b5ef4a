#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/capture_mode.h"
#include "base/geometry.h"

namespace overlay {

// Everything here is in points. View space: bottom-left origin of the view's display, y up. Screen
// space: bottom-left origin of the primary display, y up. Top-left space: top-left origin of the
// primary display, y down.

/// One listed window, as far as picking one needs it.
struct WindowCandidate {
    std::uint32_t windowID = 0;
    /// Top-left space.
    base::Rect frame;
    int windowLayer = 0;
    /// None for a window without an owning application.
    std::optional<std::int32_t> ownerPID;
    friend bool operator==(const WindowCandidate&, const WindowCandidate&) = default;
};

enum class Redraw { notNeeded, needed };
enum class OptionKey { released, held };

/// What the user has selected so far in one view, and the rules by which input changes it.
struct SelectionState {
    /// Where the drag began and its latest point; view space.
    std::optional<base::Point> startPoint;
    std::optional<base::Point> currentPoint;
    /// View space; width and height are never negative.
    std::optional<base::Rect> selectionRect;
    /// The option key was held at the last drag event.
    bool isCenterBasedResize = false;
    base::CaptureMode mode = base::CaptureMode::screenshot;
    bool isWindowMode = false;
    /// The window under the pointer and its listed frame (top-left space): set and cleared
    /// together.
    std::optional<std::uint32_t> selectedWindowID;
    std::optional<base::Rect> selectedWindowRect;
    /// What can be picked, in the order in which the windows were listed.
    std::vector<WindowCandidate> availableWindows;

    /// The button went down. The rectangle stays, so a press alone never makes one.
    void press(base::Point point);
    /// The pointer moved with the button down. Taking or leaving the option key in the middle of a
    /// drag makes the press point the centre or a corner from the next drag event on.
    void drag(base::Point point, OptionKey optionKey);
    /// Makes the rectangle anew from the two points.
    void updateSelectionRect();
    /// Switches between selecting a region and picking a window.
    void toggleWindowMode();
    /// Keeps the ordinary windows of `targetPID` that are wider and higher than 50; none of them
    /// when there is no target. With a target and a `pointer` (top-left space) the window under it
    /// is then looked for.
    Redraw applyWindowList(const std::vector<WindowCandidate>& list,
                           std::optional<std::int32_t> targetPID,
                           std::optional<base::Point> pointer);
    /// Selects the first listed window that holds `pointer` (top-left space). Over none of them the
    /// last one stays selected.
    Redraw updateHoveredWindow(base::Point pointer);

    /// The window that a mouse-up captures now; none: a mouse-up attempts the region.
    [[nodiscard]] std::optional<std::uint32_t> finishSelection() const;
    /// The region that an attempt captures: the rectangle when it is wider and higher than 2.
    [[nodiscard]] std::optional<base::Rect> capturableRegion() const;
};

/// `displayOrigin` is the origin of the view's display in screen space.
[[nodiscard]] base::Rect viewToScreen(const base::Rect& rect, base::Point displayOrigin);
[[nodiscard]] base::Rect screenToView(const base::Rect& rect, base::Point displayOrigin);
/// `primaryHeight` is the height of the primary display. Its own inverse.
[[nodiscard]] base::Rect topLeftToScreen(const base::Rect& rect, double primaryHeight);

struct Segment {
    base::Point from;
    base::Point to;
    friend bool operator==(const Segment&, const Segment&) = default;
};

/// Of the cut-out and of its border.
inline constexpr double selectionCornerRadius = 5;
inline constexpr double sizeLabelCornerRadius = 4;

// The figures of a selected region, in view space. Nothing is clamped to the display.

/// The horizontal and the vertical line through the middle.
[[nodiscard]] std::array<Segment, 2> guideLines(const base::Rect& region);
/// The two strokes of the cross in the middle.
[[nodiscard]] std::array<Segment, 2> centreMark(const base::Rect& region);
/// Width and height in whole points, for example "120 x 80".
[[nodiscard]] std::string sizeLabelText(const base::Rect& region);
/// The box of the label to the right of the region, for a text of the size `textSize`. It reaches 4
/// points further above the text's centre line than below it.
[[nodiscard]] base::Rect sizeLabelFrame(const base::Rect& region, base::Size textSize);
[[nodiscard]] base::Point sizeLabelTextOrigin(const base::Rect& labelFrame);

}  // namespace overlay
