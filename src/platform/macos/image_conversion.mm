#include "platform/macos/image_conversion.h"

#import <CoreGraphics/CoreGraphics.h>
#import <Foundation/Foundation.h>

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "platform/macos/core_foundation_handle.h"
#include "platform/macos/foundation_text.h"

namespace platform::macos {

namespace {

constexpr std::size_t bytesPerPixel = 4;
constexpr std::size_t bitsPerChannel = 8;

constexpr std::uint32_t bitmapInfo(CGImageAlphaInfo alpha) {
    return static_cast<std::uint32_t>(alpha) |
           static_cast<std::uint32_t>(kCGBitmapByteOrder32Little);
}

std::shared_ptr<const base::ColorSpace> colorSpaceFrom(CGColorSpaceRef space) {
    if (space == nullptr) {
        return nullptr;
    }
    base::ColorSpace named;
    named.name = textFrom((__bridge_transfer NSString*)CGColorSpaceCopyName(space));
    if (const Handle<CFDataRef> profile{CGColorSpaceCopyICCData(space)}) {
        const std::uint8_t* const bytes = CFDataGetBytePtr(profile.get());
        named.iccProfile.assign(bytes, bytes + CFDataGetLength(profile.get()));
    }
    return std::make_shared<const base::ColorSpace>(std::move(named));
}

CGColorSpaceRef createColorSpace(const base::ColorSpace* space) {
    if (space != nullptr && !space->iccProfile.empty()) {
        const Handle<CFDataRef> profile{
            CFDataCreate(kCFAllocatorDefault, space->iccProfile.data(),
                         static_cast<CFIndex>(space->iccProfile.size()))};
        if (const CGColorSpaceRef created = CGColorSpaceCreateWithICCData(profile.get())) {
            return created;
        }
    }
    if (space != nullptr && !space->name.empty()) {
        NSString* const name = stringFrom(space->name);
        if (const CGColorSpaceRef created =
                CGColorSpaceCreateWithName((__bridge CFStringRef)name)) {
            return created;
        }
    }
    return CGColorSpaceCreateWithName(kCGColorSpaceSRGB);
}

/// The bytes behind the picture, when they are blue, green, red, alpha; none otherwise.
std::optional<base::Image> sharedPixels(CGImageRef image) {
    const CGImageAlphaInfo alpha = CGImageGetAlphaInfo(image);
    const bool hasAlpha = alpha == kCGImageAlphaPremultipliedFirst;
    const bool isOurLayout =
        CGImageGetBitsPerPixel(image) == bytesPerPixel * bitsPerChannel &&
        (hasAlpha || alpha == kCGImageAlphaNoneSkipFirst) &&
        static_cast<std::uint32_t>(CGImageGetBitmapInfo(image)) == bitmapInfo(alpha);
    const CGDataProviderRef provider = isOurLayout ? CGImageGetDataProvider(image) : nullptr;
    if (provider == nullptr) {
        return std::nullopt;
    }
    Handle<CFDataRef> data{CGDataProviderCopyData(provider)};
    const std::size_t bytesPerRow = CGImageGetBytesPerRow(image);
    if (!data || static_cast<std::size_t>(CFDataGetLength(data.get())) <
                     bytesPerRow * CGImageGetHeight(image)) {
        return std::nullopt;
    }
    const std::uint8_t* const pixels = CFDataGetBytePtr(data.get());
    return base::Image(static_cast<int>(CGImageGetWidth(image)),
                       static_cast<int>(CGImageGetHeight(image)), bytesPerRow, pixels,
                       hasAlpha ? base::AlphaChannel::premultiplied : base::AlphaChannel::none,
                       std::shared_ptr<const void>(std::move(data)),
                       colorSpaceFrom(CGImageGetColorSpace(image)));
}

/// None when a bitmap cannot have that space: only three colours fit.
std::optional<base::Image> drawnPixels(CGImageRef image, CGColorSpaceRef space) {
    const std::size_t width = CGImageGetWidth(image);
    const std::size_t height = CGImageGetHeight(image);
    std::vector<std::uint8_t> pixels(width * height * bytesPerPixel);
    const Handle<CGContextRef> context{
        CGBitmapContextCreate(pixels.data(), width, height, bitsPerChannel, width * bytesPerPixel,
                              space, bitmapInfo(kCGImageAlphaPremultipliedFirst))};
    if (!context) {
        return std::nullopt;
    }
    CGContextDrawImage(context.get(),
                       CGRectMake(0, 0, static_cast<CGFloat>(width), static_cast<CGFloat>(height)),
                       image);
    return base::Image::fromPixels(static_cast<int>(width), static_cast<int>(height),
                                   std::move(pixels), base::AlphaChannel::premultiplied,
                                   colorSpaceFrom(space));
}

std::optional<base::Image> drawnPixels(CGImageRef image) {
    const CGColorSpaceRef own = CGImageGetColorSpace(image);
    auto drawn = own != nullptr ? drawnPixels(image, own) : std::nullopt;
    if (drawn) {
        return drawn;
    }
    const Handle<CGColorSpaceRef> standard{CGColorSpaceCreateWithName(kCGColorSpaceSRGB)};
    return drawnPixels(image, standard.get());
}

}  // namespace

std::optional<base::Image> imageFrom(CGImage* image) {
    auto shared = sharedPixels(image);
    return shared ? shared : drawnPixels(image);
}

CGImage* createImage(const base::Image& image) {
    if (image.isEmpty()) {
        return nullptr;
    }
    const auto width = static_cast<std::size_t>(image.width());
    const auto height = static_cast<std::size_t>(image.height());
    const bool hasAlpha = image.alphaChannel() == base::AlphaChannel::premultiplied;
    const std::uint32_t info =
        bitmapInfo(hasAlpha ? kCGImageAlphaPremultipliedFirst : kCGImageAlphaNoneSkipFirst);
    // Whole rows, or no image is made of them. They are there: `sharedPixels` looks for them, and
    // drawn pixels have nothing between their rows.
    const Handle<CGDataProviderRef> provider{CGDataProviderCreateWithData(
        new base::Image(image), image.row(0), image.bytesPerRow() * height,
        [](void* kept, const void*, std::size_t) { delete static_cast<base::Image*>(kept); })};
    const Handle<CGColorSpaceRef> space{createColorSpace(image.colorSpace().get())};
    return CGImageCreate(width, height, bitsPerChannel, bytesPerPixel * bitsPerChannel,
                         image.bytesPerRow(), space.get(), static_cast<CGBitmapInfo>(info),
                         provider.get(), nullptr, false, kCGRenderingIntentDefault);
}

}  // namespace platform::macos
