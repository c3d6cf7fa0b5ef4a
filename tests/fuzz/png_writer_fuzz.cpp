// Any pixels, written as PNG and read by libpng.

#include <algorithm>

#include "fuzz_input.h"
#include "platform/png/png_encoder.h"
#include "platform/png/png_reader.h"

namespace {

/// What a sample is without its alpha, rounded to the nearest; floor(color * 255 / alpha + 1/2).
int straight(int color, int alpha) {
    return alpha == 0 ? 0 : std::min(255, (2 * color * 255 + alpha) / (2 * alpha));
}

void comparePixel(const std::uint8_t* pixel, const std::uint8_t* read, int channels,
                  base::AlphaChannel alphaChannel) {
    const int alpha = alphaChannel == base::AlphaChannel::none ? 255 : pixel[3];
    for (int channel = 0; channel < 3; ++channel) {
        fuzz::require(read[channel] == straight(pixel[2 - channel], alpha),
                      "each color is what it was");
    }
    fuzz::require((channels == 4 ? read[3] : 255) == alpha, "the alpha is what it was");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const auto [width, height] = fuzz::pictureSize(input);
    const auto alphaChannel =
        input.byte() % 2 == 0 ? base::AlphaChannel::none : base::AlphaChannel::premultiplied;
    const base::Size points{static_cast<double>(input.byte()), static_cast<double>(input.byte())};
    const auto pattern = input.rest();
    // The pattern again and again: repetitions are what a compressor gets wrong.
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width) *
                                     static_cast<std::size_t>(height) * 4);
    for (std::size_t at = 0; at < pixels.size() && !pattern.empty(); ++at) {
        pixels[at] = pattern[at % pattern.size()];
    }
    const auto image = base::Image::fromPixels(width, height, pixels, alphaChannel);
    const auto file = platform::png::PngEncoder(2).encodePng(image, points);
    fuzz::require(file.hasValue(), "every picture can be written");
    const auto decoded = png_reader::decode(file.value());
    fuzz::require(decoded.problem.empty(), "libpng has nothing to complain of");
    fuzz::require(
        static_cast<int>(decoded.width) == width && static_cast<int>(decoded.height) == height,
        "the size is what it was");
    const int channels = decoded.colorType == 2 ? 3 : 4;
    fuzz::require(decoded.pixels.size() == pixels.size() / 4 * static_cast<std::size_t>(channels),
                  "every pixel is there");
    for (std::size_t pixel = 0; pixel < pixels.size() / 4; ++pixel) {
        comparePixel(pixels.data() + pixel * 4,
                     decoded.pixels.data() + pixel * static_cast<std::size_t>(channels), channels,
                     alphaChannel);
    }
    return 0;
}
