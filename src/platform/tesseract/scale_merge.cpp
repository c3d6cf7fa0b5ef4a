#include "platform/tesseract/scale_merge.h"

#include <algorithm>
#include <map>
#include <tuple>

#include "platform/tesseract/thread_pair.h"

namespace platform::tesseract {

namespace {

constexpr int settledConfidence = 80;
constexpr int settledLetters = 3;
/// In pixels of the picture it was read on: the strokes of larger letters may be taken for
/// surfaces.
constexpr double settledHeight = 24;
/// A reading of large letters counts from here on.
constexpr int largeConfidence = 80;
constexpr int largeLetters = 2;
constexpr double flatGround = 0.6;
/// In pixels of the larger picture, near the x-height: smaller letters are read there.
constexpr double largeEnough = 24;
/// A fine line that lies within a large one is a scrap of it.
constexpr double scrapShare = 0.5;
/// In pixels: what is painted over around a line, and where its ground is looked at.
constexpr int margin = 2;

Box withinImage(const Box& box, const base::Image& image) {
    return {std::max(0, box.left - margin), std::max(0, box.top - margin),
            std::min(image.width(), box.right + margin),
            std::min(image.height(), box.bottom + margin)};
}

Color colorAt(const base::Image& image, int x, int y) {
    const std::uint8_t* pixel = image.row(y) + static_cast<std::ptrdiff_t>(x) * 4;
    return {pixel[2], pixel[1], pixel[0]};
}

/// The commonest colour on the sides of `box`.
Color colorAround(const base::Image& image, const Box& box) {
    std::map<std::tuple<int, int, int>, int> counts;
    std::pair<int, Color> commonest{0, {}};
    const auto count = [&](int x, int y) {
        const Color color = colorAt(image, x, y);
        const int sum = ++counts[{color.red, color.green, color.blue}];
        if (sum > commonest.first) {
            commonest = {sum, color};
        }
    };
    for (int x = box.left; x < box.right; ++x) {
        count(x, box.top);
        count(x, box.bottom - 1);
    }
    for (int y = box.top; y < box.bottom; ++y) {
        count(box.left, y);
        count(box.right - 1, y);
    }
    return commonest.second;
}

/// `pixels` are those of one row of the smaller picture.
void average(const base::Image& image, int factor, int y, std::uint8_t* pixels) {
    const int width = image.width() / factor;
    std::vector<int> sums(static_cast<std::size_t>(width) * 4);
    for (int row = y * factor; row < (y + 1) * factor; ++row) {
        const std::uint8_t* source = image.row(row);
        for (std::size_t x = 0; x < static_cast<std::size_t>(width); ++x) {
            for (int step = 0; step < factor; ++step, source += 4) {
                sums[4 * x] += source[0];
                sums[4 * x + 1] += source[1];
                sums[4 * x + 2] += source[2];
            }
        }
    }
    for (const int sum : sums) {
        *pixels++ = static_cast<std::uint8_t>(sum / (factor * factor));
    }
}

void paint(std::vector<std::uint8_t>& pixels, int width, const Box& box, Color color) {
    for (int y = box.top; y < box.bottom; ++y) {
        for (int x = box.left; x < box.right; ++x) {
            const auto place = 4 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                                    static_cast<std::size_t>(x));
            pixels[place] = color.blue;
            pixels[place + 1] = color.green;
            pixels[place + 2] = color.red;
        }
    }
}

Box scaled(const Box& box, int factor) {
    return {box.left * factor, box.top * factor, box.right * factor, box.bottom * factor};
}

bool isLargeWriting(const ReadLine& line) {
    return line.letterHeight >= largeEnough && line.confidence >= largeConfidence &&
           line.letters >= largeLetters && line.ground >= flatGround;
}

double sharedShare(const Box& small, const Box& large) {
    const double columns = std::max(0, small.sharedColumns(large));
    const double rows = std::max(0, small.sharedRows(large));
    return columns * rows / std::max(1, small.area());
}

}  // namespace

bool isSettled(const ReadLine& line) {
    return line.confidence >= settledConfidence && line.letters >= settledLetters &&
           line.letterHeight <= settledHeight * line.reduction;
}

base::Image reduced(const base::Image& image, int factor, const std::vector<ReadLine>& lines) {
    const int width = image.width() / factor;
    const int height = image.height() / factor;
    const std::size_t rowBytes = static_cast<std::size_t>(width) * 4;
    std::vector<std::uint8_t> pixels(rowBytes * static_cast<std::size_t>(height));
    shareBands(height, image.width() * factor, [&](int first, int end) {
        for (int y = first; y < end; ++y) {
            average(image, factor, y, pixels.data() + rowBytes * static_cast<std::size_t>(y));
        }
    });
    for (const ReadLine& line : lines) {
        if (isSettled(line)) {
            const Box box = withinImage(line.box, image);
            const Box small{box.left / factor, box.top / factor,
                            std::min(width, (box.right + factor - 1) / factor),
                            std::min(height, (box.bottom + factor - 1) / factor)};
            paint(pixels, width, small, colorAround(image, box));
        }
    }
    return base::Image::fromPixels(width, height, std::move(pixels), base::AlphaChannel::none);
}

void mergeLarger(std::vector<ReadLine>& lines, std::vector<ReadLine> larger, int factor) {
    for (ReadLine& line : larger) {
        line.box = scaled(line.box, factor);
        line.letterHeight *= factor;
        line.reduction = factor;
        if (!isLargeWriting(line)) {
            continue;
        }
        const auto isSame = [&](const ReadLine& other) {
            return sharedShare(other.box, line.box) > scrapShare;
        };
        const auto isBetter = [&](const ReadLine& other) {
            return isSettled(other) ||
                   (other.letters >= line.letters && other.confidence >= line.confidence);
        };
        if (std::any_of(lines.begin(), lines.end(),
                        [&](const ReadLine& other) { return isSame(other) && isBetter(other); })) {
            continue;
        }
        std::erase_if(lines, isSame);
        const auto below = std::find_if(lines.begin(), lines.end(), [&](const ReadLine& other) {
            return other.box.centerY() > line.box.centerY() &&
                   other.box.sharedColumns(line.box) > 0;
        });
        lines.insert(below, std::move(line));
    }
}

}  // namespace platform::tesseract
