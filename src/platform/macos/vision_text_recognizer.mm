#include "platform/macos/vision_text_recognizer.h"

#import <Vision/Vision.h>

#include <optional>
#include <utility>
#include <vector>

#include "platform/macos/core_foundation_handle.h"
#include "platform/macos/foundation_error.h"
#include "platform/macos/foundation_text.h"
#include "platform/macos/image_conversion.h"
#include "platform/macos/platform_constants.h"

namespace platform::macos {

namespace {

static_assert(recognitionLevel == VNRequestTextRecognitionLevelAccurate);

using Lines = std::vector<capture::TextObservation>;

/// None without results, or when one of them is no text.
std::optional<Lines> linesFrom(NSArray<__kindof VNObservation*>* results) {
    if (results == nil) {
        return std::nullopt;
    }
    Lines lines;
    for (VNObservation* observation in results) {
        if (![observation isKindOfClass:[VNRecognizedTextObservation class]]) {
            return std::nullopt;
        }
        auto* const text = static_cast<VNRecognizedTextObservation*>(observation);
        capture::TextObservation line;
        for (VNRecognizedText* candidate in [text topCandidates:1]) {
            line.candidates.push_back(textFrom(candidate.string));
        }
        lines.push_back(std::move(line));
    }
    return lines;
}

}  // namespace

base::Result<std::vector<capture::TextObservation>> VisionTextRecognizer::recognize(
    const base::Image& image) {
    const Handle<CGImageRef> picture{createImage(image)};
    if (!picture) {
        return base::Error{base::ErrorKind::invalid, "The picture is empty."};
    }
    @autoreleasepool {
        VNImageRequestHandler* const handler =
            [[VNImageRequestHandler alloc] initWithCGImage:picture.get() options:@{}];
        // Filled before the call below returns.
        __block std::optional<Lines> lines;
        VNRecognizeTextRequest* const request = [[VNRecognizeTextRequest alloc]
            initWithCompletionHandler:^(VNRequest* finished, NSError*) {
              lines = linesFrom(finished.results);
            }];
        request.recognitionLevel = static_cast<VNRequestTextRecognitionLevel>(recognitionLevel);
        NSError* error = nil;
        if (![handler performRequests:@[ request ] error:&error]) {
            return describedError(error).value_or(localizedError(nil));
        }
        if (!lines) {
            return base::Error{base::ErrorKind::notFound, "The recogniser gave no lines of text."};
        }
        return *lines;
    }
}

}  // namespace platform::macos
