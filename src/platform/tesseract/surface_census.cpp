#include "platform/tesseract/surface_census.h"

#include <cmath>
#include <map>

namespace platform::tesseract {

namespace {

/// One pixel in sixteen is enough to know a surface; of large pages, this many in all.
constexpr int smallestStep = 4;
constexpr double mostSamples = 1 << 18;
/// Windows, their bars, selections and stripes of tables: pages have no more surfaces that matter.
constexpr std::size_t mostSurfaces = 12;
constexpr double mostOfIt = 0.6;

struct Count {
    long samples = 0;
    Color color;
};

/// In steps of eight, so that dithering does not scatter.
std::uint32_t keyOf(Color color) {
    return static_cast<std::uint32_t>((color.red / 8) << 16 | (color.green / 8) << 8 |
                                      color.blue / 8);
}

}  // namespace

SurfaceCensus::SurfaceCensus(const BackgroundModel& background) {
    const ColorPlane& colors = background.colors();
    const double area = static_cast<double>(colors.width()) * colors.height();
    step_ = std::max(smallestStep, static_cast<int>(std::ceil(std::sqrt(area / mostSamples))));
    std::map<std::uint32_t, Count> counts;
    Plane<std::uint32_t> samples(samplesBefore(colors.width()), samplesBefore(colors.height()));
    for (int y = 0; y < samples.height(); ++y) {
        for (int x = 0; x < samples.width(); ++x) {
            const Color color = colors.at(x * step_, y * step_);
            samples.at(x, y) = keyOf(color);
            Count& count = counts[samples.at(x, y)];
            ++count.samples;
            count.color = color;
        }
    }
    std::vector<std::pair<std::uint32_t, Count>> commonest(counts.begin(), counts.end());
    std::sort(commonest.begin(), commonest.end(), [](const auto& one, const auto& other) {
        return one.second.samples > other.second.samples;
    });
    commonest.resize(std::min(commonest.size(), mostSurfaces));
    for (const auto& [key, count] : commonest) {
        Plane<int> sums(samples.width() + 1, samples.height() + 1);
        for (int y = 0; y < samples.height(); ++y) {
            int inRow = 0;
            for (int x = 0; x < samples.width(); ++x) {
                inRow += samples.at(x, y) == key ? 1 : 0;
                sums.at(x + 1, y + 1) = sums.at(x + 1, y) + inRow;
            }
        }
        surfaces_.push_back({count.color, std::move(sums)});
    }
}

std::optional<Color> SurfaceCensus::dominantIn(const Box& box) const {
    const int left = samplesBefore(box.left);
    const int top = samplesBefore(box.top);
    const int right = samplesBefore(box.right);
    const int bottom = samplesBefore(box.bottom);
    const double all = static_cast<double>(right - left) * (bottom - top);
    for (const Surface& surface : surfaces_) {
        const Plane<int>& counts = surface.counts;
        const int samples = counts.at(right, bottom) - counts.at(left, bottom) -
                            counts.at(right, top) + counts.at(left, top);
        if (all > 0 && samples >= mostOfIt * all) {
            return surface.color;
        }
    }
    return std::nullopt;
}

}  // namespace platform::tesseract
