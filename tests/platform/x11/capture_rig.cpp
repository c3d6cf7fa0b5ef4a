#include "capture_rig.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

namespace tests {

namespace {

desktop::DesktopOptions small(desktop::DesktopOptions options) {
    options.outputs = {{0, 0, 800, 600}};
    return options;
}

}  // namespace

CaptureRig::CaptureRig(desktop::DesktopOptions options)
    : desktop_(small(options)),
      connection_(connectTo(desktop_)),
      stage_(*connection_, queue_, [] { return getpid(); }),
      layout_({{7, "A", {0, 0, 800, 600}, 1.0, platform::x11::DisplayRole::primary, nullptr}}),
      service_(std::make_unique<platform::x11::X11CaptureService>(*connection_, queue_, stage_,
                                                                  [this] { return layout_; })) {
    queue_.allowLeftovers();
    if (options.compositor != desktop::Compositor::none) {
        awaitBlending(desktop_);
    }
}

bool CaptureRig::runUntil(const std::function<bool()>& condition) {
    return tests::runUntil(*connection_, queue_, condition);
}

capture::ShareableContent CaptureRig::content(capture::DesktopWindows desktopWindows,
                                              capture::WindowVisibility visibility) {
    std::optional<capture::ShareableContent> listed;
    service_->shareableContent(desktopWindows, visibility, [&](auto content, auto error) {
        EXPECT_FALSE(error);
        listed = std::move(content);
    });
    EXPECT_FALSE(listed) << "the completion comes in a later turn";
    EXPECT_TRUE(runUntil([&] { return listed.has_value(); }));
    return listed.value_or(capture::ShareableContent{});
}

std::optional<capture::ShareableWindow> CaptureRig::listed(xcb_window_t window,
                                                           capture::WindowVisibility visibility) {
    const auto windows = content(capture::DesktopWindows::excluded, visibility).windows;
    const auto found = std::find_if(windows.begin(), windows.end(), [&](const auto& candidate) {
        return candidate.windowID == window;
    });
    return found == windows.end() ? std::nullopt : std::optional(*found);
}

base::Result<base::Image> CaptureRig::capture(const capture::ContentFilter& filter,
                                              capture::StreamConfiguration configuration) {
    configuration.cursor = capture::CursorVisibility::hidden;
    configuration.scaling = capture::Scaling::none;
    return captureAsIs(filter, configuration);
}

base::Result<base::Image> CaptureRig::captureAsIs(
    const capture::ContentFilter& filter, const capture::StreamConfiguration& configuration) {
    std::optional<base::Result<base::Image>> result;
    service_->captureImage(filter, configuration, [&](auto image, auto error) {
        EXPECT_FALSE(result) << "the completion comes once";
        EXPECT_NE(image.has_value(), error.has_value());
        result = image ? base::Result<base::Image>(*image) : base::Result<base::Image>(*error);
    });
    EXPECT_FALSE(result) << "the completion comes in a later turn";
    EXPECT_TRUE(runUntil([&] { return result.has_value(); }));
    queue_.runAll();
    return result.value_or(base::Error{base::ErrorKind::failed, "no completion"});
}

base::Result<base::Image> CaptureRig::captureRegion(const base::Rect& rect) {
    capture::StreamConfiguration configuration;
    configuration.sourceRect = rect;
    configuration.width = static_cast<std::int64_t>(rect.size.width);
    configuration.height = static_cast<std::int64_t>(rect.size.height);
    return capture(capture::DisplayFilter{content().displays.at(0), {}}, configuration);
}

base::Result<base::Image> CaptureRig::captureWindow(xcb_window_t window,
                                                    capture::WindowShadow shadow) {
    const auto found = listed(window, capture::WindowVisibility::all);
    if (!found) {
        return base::Error{base::ErrorKind::notFound, "not listed"};
    }
    capture::StreamConfiguration configuration;
    configuration.singleWindowShadow = shadow;
    return capture(capture::WindowFilter{*found}, configuration);
}

void CaptureRig::awaitPixel(int x, int y, std::uint32_t color) {
    EXPECT_TRUE(runUntil(
        [&] { return desktop::readScreen(desktop_.client(), x, y, 1, 1).at(0, 0) == color; }));
}

desktop::Picture pictureOf(const base::Image& image) {
    desktop::Picture picture{image.width(), image.height(), {}};
    for (int y = 0; y < image.height(); ++y) {
        const std::uint8_t* pixel = image.row(y);
        for (int x = 0; x < image.width(); ++x, pixel += 4) {
            const std::uint32_t alpha =
                image.alphaChannel() == base::AlphaChannel::none ? 255U : pixel[3];
            picture.pixels.push_back(alpha << 24U | static_cast<std::uint32_t>(pixel[2]) << 16U |
                                     static_cast<std::uint32_t>(pixel[1]) << 8U | pixel[0]);
        }
    }
    return picture;
}

}  // namespace tests
