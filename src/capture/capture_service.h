#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "base/displays.h"
#include "base/geometry.h"
#include "base/image.h"
#include "base/result.h"

namespace capture {

using WindowID = std::uint32_t;

struct RunningApplication {
    std::optional<std::string> bundleIdentifier;
    std::int32_t processID = 0;
};

struct ShareableWindow {
    WindowID windowID = 0;
    /// Top-left space, points.
    base::Rect frame;
    /// 0 for ordinary windows, above 0 for docks, menus and overlays.
    int windowLayer = 0;
    std::optional<RunningApplication> owningApplication;
    /// As that of the displays.
    std::shared_ptr<const void> backing;
};

struct ShareableDisplay {
    base::DisplayID displayID = 0;
    /// Points, as the service lists displays: in the space of `base::Screen` where it has one list.
    base::Rect frame;
    double scaleFactor = 1.0;
    /// What the service needs to take the picture as it was when the content was asked for.
    std::shared_ptr<const void> backing;
};

/// What can be captured at the moment of the request.
struct ShareableContent {
    std::vector<ShareableDisplay> displays;
    /// Front to back.
    std::vector<ShareableWindow> windows;
};

enum class DesktopWindows { included, excluded };
enum class WindowVisibility { all, onScreenOnly };

/// One display without some windows.
struct DisplayFilter {
    ShareableDisplay display;
    std::vector<ShareableWindow> excludedWindows;
};
/// One window by itself, wherever it is.
struct WindowFilter {
    ShareableWindow window;
};
using ContentFilter = std::variant<DisplayFilter, WindowFilter>;

enum class CursorVisibility { hidden, shown };
enum class Scaling { none, toFit };
enum class PixelFormat : std::uint32_t { bgra = 0x42475241 };
enum class WindowShadow { included, ignored };

struct StreamConfiguration {
    /// In points inside the display, y down from its top; absent: all of it.
    std::optional<base::Rect> sourceRect;
    /// In pixels; absent: the size that the filter gives.
    std::optional<std::int64_t> width;
    std::optional<std::int64_t> height;
    CursorVisibility cursor = CursorVisibility::shown;
    Scaling scaling = Scaling::toFit;
    PixelFormat pixelFormat = PixelFormat::bgra;
    /// Absent: the service's default.
    std::optional<std::string> colorSpaceName;
    WindowShadow singleWindowShadow = WindowShadow::included;
};

/// Reads the screen. The calls are made on the main thread; each completion is called there exactly
/// once, in a later turn.
class CaptureService {
  public:
    using ContentCompletion =
        std::function<void(std::optional<ShareableContent>, std::optional<base::Error>)>;
    using ImageCompletion =
        std::function<void(std::optional<base::Image>, std::optional<base::Error>)>;

    virtual ~CaptureService() = default;
    virtual void shareableContent(DesktopWindows desktopWindows, WindowVisibility visibility,
                                  ContentCompletion completion) = 0;
    /// What lies outside of the display is opaque black in the picture. An error when the service
    /// cannot do what the configuration says.
    virtual void captureImage(const ContentFilter& filter, const StreamConfiguration& configuration,
                              ImageCompletion completion) = 0;
};

}  // namespace capture
