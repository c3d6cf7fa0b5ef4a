#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <variant>

#include "base/geometry.h"
#include "base/image.h"
#include "base/result.h"

namespace ui {

/// One picture of a film.
struct VideoFrame {
    /// Exactly as large as it was asked for, opaque.
    base::Image image;
    /// When it is due, counted from the first picture of the first round. Never before the picture
    /// that came before it.
    std::chrono::microseconds time{0};
};

/// A film without its sound, picture by picture, endlessly: the first one follows the last one when
/// that has lasted its time. Main thread.
class VideoLooper {
  public:
    using Completion = std::function<void(base::Result<VideoFrame>)>;

    virtual ~VideoLooper() = default;
    /// Hands over the next picture, as much of it as fills `size` with its proportions kept, the
    /// rest cut off on both sides alike. Completes once, in a later turn of the main thread, and
    /// not after this object has gone. One at a time; nothing is decoded without being asked for.
    ///
    /// A picture keeps its pixels until the second call after the one that brought it. The kind
    /// `notFound` says that the file holds no video; after an error there is no next picture.
    virtual void nextFrame(base::PixelSize size, Completion completion) = 0;
};

/// A film in a view of the system's own, which plays it by itself once it is ready: without its
/// sound, endlessly, filling the view with its proportions kept. Main thread.
class VideoView {
  public:
    using Completion = std::function<void(base::Status)>;

    virtual ~VideoView() = default;
    /// The view or window as the window system names it, for a toolkit to put among its own. Blank
    /// until the film plays; there as long as this object.
    [[nodiscard]] virtual std::uintptr_t handle() const = 0;
    /// Clips the view to a rectangle with continuous corners of this radius, in points.
    virtual void setCornerRadius(double radius) = 0;
    /// Gets the film ready and plays it. Completes once, in a later turn of the main thread, and
    /// not after this object has gone. The kind `notFound` says that the file holds no video; after
    /// an error the view stays blank.
    virtual void play(Completion completion) = 0;
};

/// A film comes in pictures, or the system shows it by itself.
using Film = std::variant<std::unique_ptr<VideoLooper>, std::unique_ptr<VideoView>>;

/// Opens the films that come with the program. Main thread.
class VideoLooperFactory {
  public:
    virtual ~VideoLooperFactory() = default;
    /// The resource `videoName` with the extension "mp4", not looked into yet. The kind `notFound`
    /// says that there is no such resource.
    virtual base::Result<Film> open(const std::string& videoName) = 0;
};

}  // namespace ui
