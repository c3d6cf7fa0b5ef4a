#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "base/displays.h"
#include "base/geometry.h"
#include "base/result.h"

namespace overlay {

/// sRGB components and alpha, each from 0 to 1, not premultiplied.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;
    friend bool operator==(const Color&, const Color&) = default;
};

enum class FontWeight { regular, medium };

/// The system's user-interface font at a size in points (device-independent pixels).
struct Font {
    double size = 13;
    FontWeight weight = FontWeight::regular;
    friend bool operator==(const Font&, const Font&) = default;
};

// The drawing steps, all in view space (bottom-left origin, points), painted in their order.

/// Fills a rectangle with rounded corners (radius 0: square ones), source-over.
struct FillStep {
    base::Rect rect;
    double cornerRadius = 0;
    Color color;
    friend bool operator==(const FillStep&, const FillStep&) = default;
};
/// Makes the inside of a rounded rectangle fully transparent again.
struct ClearStep {
    base::Rect rect;
    double cornerRadius = 0;
    friend bool operator==(const ClearStep&, const ClearStep&) = default;
};
/// Strokes the outline of a rounded rectangle, the line centred on it.
struct StrokeStep {
    base::Rect rect;
    double cornerRadius = 0;
    double lineWidth = 1;
    Color color;
    friend bool operator==(const StrokeStep&, const StrokeStep&) = default;
};
/// Strokes one horizontal or vertical segment, butt ends.
struct SegmentStep {
    base::Point from;
    base::Point to;
    double lineWidth = 1;
    Color color;
    friend bool operator==(const SegmentStep&, const SegmentStep&) = default;
};
/// One line of text; `origin` is the bottom-left corner of the box that `measure` gives.
struct TextStep {
    std::string text;
    base::Point origin;
    Font font;
    Color color;
    friend bool operator==(const TextStep&, const TextStep&) = default;
};
using DrawingStep = std::variant<FillStep, ClearStep, StrokeStep, SegmentStep, TextStep>;

/// How the window of an overlay is made, in the terms of the window system it was conceived for.
/// Adapters of other systems provide the same behaviour in their own way.
struct PanelConfiguration {
    std::uint32_t styleMask = 0;
    std::uint32_t backing = 0;
    bool isDeferred = true;
    bool isOpaque = true;
    int level = 0;
    bool ignoresMouseEvents = true;
    std::uint32_t collectionBehavior = 0;
    bool hidesOnDeactivate = true;
    bool isReleasedWhenClosed = true;
    std::uint32_t trackingAreaOptions = 0;
    friend bool operator==(const PanelConfiguration&, const PanelConfiguration&) = default;
};

/// Bits of `MouseEvent::modifierFlags`.
inline constexpr std::uint32_t optionModifierFlag = 0x80000;

struct MouseEvent {
    /// In view space.
    base::Point location;
    std::uint32_t modifierFlags = 0;
};

enum class KeyVerdict { handled, unhandled };

/// Who answers the input of a surface. Main thread. Only the main (left) button is reported.
class SurfaceInput {
  public:
    virtual ~SurfaceInput() = default;
    virtual void mouseEntered() = 0;
    virtual void mouseExited() = 0;
    virtual void mouseMoved(const MouseEvent& event) = 0;
    virtual void mouseDown(const MouseEvent& event) = 0;
    virtual void mouseDragged(const MouseEvent& event) = 0;
    virtual void mouseUp(const MouseEvent& event) = 0;
    /// A key-down that reached the window itself, with its virtual key code.
    virtual KeyVerdict keyDown(std::uint32_t keyCode) = 0;
    /// The overlay is to end: the person's wish, or the window cannot be shown. Later than
    /// `makeKeyAndOrderFront`, never from inside it.
    virtual void cancelOperation() = 0;
};

/// One transparent window that exactly covers one display. Main thread.
///
/// Nothing is painted before the first `present`. Destroying a surface closes it.
class OverlaySurface {
  public:
    virtual ~OverlaySurface() = default;
    /// Brings the window above everything and gives it the keys, without activating the program.
    virtual void makeKeyAndOrderFront() = 0;
    /// Takes the window off the screen; no input is reported from here on.
    virtual void close() = 0;
    /// The box of one line of text, in points.
    [[nodiscard]] virtual base::Size measure(const std::string& text, const Font& font) = 0;
    /// Replaces the whole drawing by `steps`; only what lies in `changed` (view space) differs from
    /// the drawing before.
    virtual void present(const std::vector<DrawingStep>& steps, const base::Rect& changed) = 0;
    /// The display that the window is on, none once that display is gone.
    [[nodiscard]] virtual std::optional<base::Screen> screen() const = 0;
};

/// Makes the surfaces of one opening. Main thread.
class OverlaySurfaceFactory {
  public:
    virtual ~OverlaySurfaceFactory() = default;
    /// `input` must outlive the surface.
    virtual std::unique_ptr<OverlaySurface> create(const base::Screen& screen,
                                                   const PanelConfiguration& configuration,
                                                   SurfaceInput& input) = 0;
};

}  // namespace overlay
