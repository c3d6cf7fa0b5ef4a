#include "platform/macos/screen_capture_kit_capture_service.h"

#import <CoreVideo/CoreVideo.h>
#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include <utility>

#include "platform/macos/core_graphics_geometry.h"
#include "platform/macos/foundation_error.h"
#include "platform/macos/foundation_text.h"
#include "platform/macos/image_conversion.h"
#include "platform/macos/main_thread.h"
#include "platform/macos/main_thread_completion.h"
#include "platform/macos/object_backing.h"
#include "platform/macos/platform_constants.h"

namespace platform::macos {

namespace {

static_assert(capturePixelFormat == kCVPixelFormatType_32BGRA);
static_assert(static_cast<OSType>(capture::PixelFormat::bgra) == kCVPixelFormatType_32BGRA);

using MaybeError = std::optional<base::Error>;

std::optional<capture::RunningApplication> applicationFrom(SCRunningApplication* application) {
    if (application == nil) {
        return std::nullopt;
    }
    return capture::RunningApplication{
        .bundleIdentifier = knownTextFrom(application.bundleIdentifier),
        .processID = application.processID};
}

/// In the service's order; the frames as the service gives them. Any thread.
std::optional<capture::ShareableContent> contentFrom(SCShareableContent* content) {
    if (content == nil) {
        return std::nullopt;
    }
    capture::ShareableContent shareable;
    for (SCDisplay* display in content.displays) {
        shareable.displays.push_back({.displayID = display.displayID,
                                      .frame = rectFrom(display.frame),
                                      .backing = backingFrom(display)});
    }
    for (SCWindow* window in content.windows) {
        shareable.windows.push_back({.windowID = window.windowID,
                                     .frame = rectFrom(window.frame),
                                     .windowLayer = static_cast<int>(window.windowLayer),
                                     .owningApplication = applicationFrom(window.owningApplication),
                                     .backing = backingFrom(window)});
    }
    return shareable;
}

SCWindow* windowFrom(const capture::ShareableWindow& window) {
    return (__bridge SCWindow*)window.backing.get();
}

SCContentFilter* filterFrom(const capture::DisplayFilter& filter) {
    NSMutableArray<SCWindow*>* const excluded = [NSMutableArray array];
    for (const capture::ShareableWindow& window : filter.excludedWindows) {
        [excluded addObject:windowFrom(window)];
    }
    return
        [[SCContentFilter alloc] initWithDisplay:(__bridge SCDisplay*)filter.display.backing.get()
                                excludingWindows:excluded];
}

SCContentFilter* filterFrom(const capture::WindowFilter& filter) {
    return [[SCContentFilter alloc] initWithDesktopIndependentWindow:windowFrom(filter.window)];
}

/// What is absent stays at the service's default. The colour space's name is not retained.
SCStreamConfiguration* streamFrom(const capture::StreamConfiguration& configuration,
                                  NSString* colorSpaceName) {
    SCStreamConfiguration* const stream = [[SCStreamConfiguration alloc] init];
    if (configuration.sourceRect) {
        stream.sourceRect = cgRectFrom(*configuration.sourceRect);
    }
    if (configuration.width) {
        stream.width = static_cast<std::size_t>(*configuration.width);
    }
    if (configuration.height) {
        stream.height = static_cast<std::size_t>(*configuration.height);
    }
    stream.showsCursor = configuration.cursor == capture::CursorVisibility::shown ? YES : NO;
    stream.scalesToFit = configuration.scaling == capture::Scaling::toFit ? YES : NO;
    stream.pixelFormat = static_cast<OSType>(configuration.pixelFormat);
    // Means something for the picture of a single window only.
    stream.ignoreShadowsSingleWindow =
        configuration.singleWindowShadow == capture::WindowShadow::ignored ? YES : NO;
    if (colorSpaceName != nil) {
        stream.colorSpaceName = (__bridge CFStringRef)colorSpaceName;
    }
    return stream;
}

}  // namespace

void ScreenCaptureKitCaptureService::shareableContent(capture::DesktopWindows desktopWindows,
                                                      capture::WindowVisibility visibility,
                                                      ContentCompletion completion) {
    const MainThreadCompletion<std::optional<capture::ShareableContent>, MaybeError> finish(
        runOnMainThread, alive_.guard(std::move(completion)));
    [SCShareableContent
        getShareableContentExcludingDesktopWindows:desktopWindows ==
                                                   capture::DesktopWindows::excluded
                               onScreenWindowsOnly:visibility ==
                                                   capture::WindowVisibility::onScreenOnly
                                 completionHandler:^(SCShareableContent* content, NSError* error) {
                                   // On the service's queue.
                                   finish(contentFrom(content), describedError(error));
                                 }];
}

void ScreenCaptureKitCaptureService::captureImage(const capture::ContentFilter& filter,
                                                  const capture::StreamConfiguration& configuration,
                                                  ImageCompletion completion) {
    const MainThreadCompletion<std::optional<base::Image>, MaybeError> finish(
        runOnMainThread, alive_.guard(std::move(completion)));
    NSString* const colorSpaceName =
        configuration.colorSpaceName ? stringFrom(*configuration.colorSpaceName) : nil;
    [SCScreenshotManager
        captureImageWithFilter:std::visit([](const auto& one) { return filterFrom(one); }, filter)
                 configuration:streamFrom(configuration, colorSpaceName)
             completionHandler:^(CGImageRef image, NSError* error) {
               // On the service's queue. The name has to live until here.
               (void)colorSpaceName;
               finish(image == nullptr ? std::nullopt : imageFrom(image), describedError(error));
             }];
}

}  // namespace platform::macos
