// Any pixels as a page: its size, how many bits a pixel has, two colours, the pixels.

#include "fuzz_input.h"
#include "platform/tesseract/page_analysis.h"

namespace {

enum class Depth { bit, gray, color };

std::vector<std::uint8_t> pixelsOf(fuzz::Input input, std::size_t count, Depth depth) {
    const std::uint8_t paper = input.byte();
    const std::uint8_t letters = input.byte();
    std::vector<std::uint8_t> pixels;
    pixels.reserve(count * 4);
    std::uint8_t bits = 0;
    for (std::size_t pixel = 0; pixel < count; ++pixel) {
        if (depth == Depth::color) {
            pixels.insert(pixels.end(), {input.byte(), input.byte(), input.byte(), 255});
            continue;
        }
        if (depth == Depth::gray) {
            bits = input.byte();
        } else {
            bits = pixel % 8 == 0 ? input.byte() : static_cast<std::uint8_t>(bits << 1U);
        }
        const std::uint8_t gray =
            depth == Depth::gray ? bits : ((bits & 0x80U) != 0 ? letters : paper);
        pixels.insert(pixels.end(), {gray, gray, gray, 255});
    }
    return pixels;
}

void checkPage(const platform::tesseract::PageAnalysis& page, int width, int height) {
    const std::size_t count = page.lines().size();
    fuzz::require(page.metrics().size() == count && page.grounds().size() == count &&
                      page.pitches().size() == count,
                  "every line has its measures");
    for (const auto& line : page.lines()) {
        fuzz::require(!line.glyphsFromLeft().empty(), "a line has marks");
        for (const auto& glyph : line.glyphsFromLeft()) {
            fuzz::require(glyph.box.left >= 0 && glyph.box.top >= 0 && glyph.box.right <= width &&
                              glyph.box.bottom <= height && glyph.box.width() > 0 &&
                              glyph.box.height() > 0,
                          "a mark lies on its page");
        }
    }
    for (const double ground : page.grounds()) {
        fuzz::require(ground >= 0 && ground <= 1, "a share is 0 to 1");
    }
    for (const double pitch : page.pitches()) {
        fuzz::require(pitch >= 0, "a pitch is a length");
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const auto [width, height] = fuzz::pictureSize(input);
    const auto depth = static_cast<Depth>(input.byte() % 3);
    const auto count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    const auto image = base::Image::fromPixels(width, height, pixelsOf(input, count, depth),
                                               base::AlphaChannel::none);
    checkPage(platform::tesseract::PageAnalysis(image), width, height);
    return 0;
}
