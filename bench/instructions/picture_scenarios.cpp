#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "instructions/scenarios.h"
#include "micro/pictures.h"
#include "platform/png/png_encoder.h"
#include "platform/tesseract/page_analysis.h"
#include "platform/x11/screen_reader.h"
#include "platform/x11/soft_shadow.h"

namespace bench {

namespace {

constexpr int width = 1280;
constexpr int height = 800;

/// On one thread, so that every machine does the same.
void encode(const base::Image& picture) {
    platform::png::PngEncoder encoder(1);
    (void)encoder.encodePng(picture, {width, height});
}

/// White but for a narrow column of text: hardly any bytes, and no row like the one above it.
base::Image drawColumn() {
    constexpr std::size_t columnShare = 24;
    const base::Image text = drawPicture(PictureKind::text, width, height);
    constexpr std::size_t bytesPerRow = std::size_t{width} * 4;
    std::vector<std::uint8_t> pixels(bytesPerRow * height, 0xFF);
    for (int y = 0; y < height; ++y) {
        std::memcpy(pixels.data() + static_cast<std::size_t>(y) * bytesPerRow, text.row(y),
                    bytesPerRow / columnShare);
    }
    return base::Image::fromPixels(width, height, std::move(pixels), base::AlphaChannel::none);
}

void shade() {
    const platform::x11::SoftShadow shadow(1);
    const platform::x11::NativeRect window{24, 16, 900, 700};
    const platform::x11::NativeRect frame = shadow.frameAround(window);
    const auto pixels = std::make_shared<std::vector<std::uint8_t>>(
        static_cast<std::size_t>(frame.width) * static_cast<std::size_t>(frame.height) * 4, 0xFF);
    shadow.draw(
        {.width = frame.width, .height = frame.height, .pixels = pixels->data(), .owner = pixels},
        window);
}

}  // namespace

std::vector<Scenario> pictureScenarios() {
    std::vector<Scenario> scenarios;
    for (const PictureKind kind : allPictureKinds) {
        scenarios.push_back({"png: " + std::string(nameOf(kind)) + ", 1280x800",
                             [picture = drawPicture(kind, width, height)] { encode(picture); }});
    }
    scenarios.push_back(
        {"png: a column of text, 1280x800", [picture = drawColumn()] { encode(picture); }});
    scenarios.push_back({"page analysis: text, 1280x800",
                         [picture = drawPicture(PictureKind::text, width, height)] {
                             (void)platform::tesseract::PageAnalysis(picture).lines().size();
                         }});
    scenarios.push_back({"shadow of a window of 900x700", shade});
    return scenarios;
}

}  // namespace bench
