#include "platform/tesseract/resampling.h"

#include <cmath>
#include <numbers>

namespace platform::tesseract {

namespace {

double radiusOf(ResamplingKernel kernel) {
    return kernel == ResamplingKernel::cubic ? 2 : 3;
}

double weightAt(ResamplingKernel kernel, double x) {
    x = std::abs(x);
    if (kernel == ResamplingKernel::cubic) {
        constexpr double a = -0.5;
        if (x < 1) {
            return ((a + 2) * x - (a + 3)) * x * x + 1;
        }
        return x < 2 ? ((a * x - 5 * a) * x + 8 * a) * x - 4 * a : 0;
    }
    if (x < 1e-9) {
        return 1;
    }
    if (x >= 3) {
        return 0;
    }
    const double angle = std::numbers::pi * x;
    return 3 * std::sin(angle) * std::sin(angle / 3) / (angle * angle);
}

/// Which source positions make one destination position, and how much each counts.
struct Taps {
    int first = 0;
    std::vector<float> weights;
};

std::vector<Taps> tapsFor(int count, double scale, double offset, ResamplingKernel kernel) {
    const double stretch = std::max(1.0, 1 / scale);
    const double radius = radiusOf(kernel) * stretch;
    std::vector<Taps> all(static_cast<std::size_t>(count));
    for (int index = 0; index < count; ++index) {
        const double center = (index + 0.5) / scale - 0.5 + offset;
        Taps& taps = all[static_cast<std::size_t>(index)];
        taps.first = static_cast<int>(std::ceil(center - radius));
        const int last = static_cast<int>(std::floor(center + radius));
        double sum = 0;
        for (int position = taps.first; position <= last; ++position) {
            const double weight = weightAt(kernel, (position - center) / stretch);
            taps.weights.push_back(static_cast<float>(weight));
            sum += weight;
        }
        for (float& weight : taps.weights) {
            weight = static_cast<float>(weight / sum);
        }
    }
    return all;
}

}  // namespace

InkPlane resample(const InkPlane& source, double left, double top, int width, int height,
                  double scaleX, double scaleY, ResamplingKernel kernel) {
    const auto columns = tapsFor(width, scaleX, left, kernel);
    const auto rows = tapsFor(height, scaleY, top, kernel);
    Plane<float> narrowed(width, source.height());
    for (int y = 0; y < source.height(); ++y) {
        const std::uint8_t* from = source.row(y);
        float* to = narrowed.row(y);
        for (int x = 0; x < width; ++x) {
            const Taps& taps = columns[static_cast<std::size_t>(x)];
            const int begin = std::max(0, -taps.first);
            const int end =
                std::min(static_cast<int>(taps.weights.size()), source.width() - taps.first);
            float sum = 0;
            for (int index = begin; index < end; ++index) {
                sum += taps.weights[static_cast<std::size_t>(index)] *
                       static_cast<float>(from[taps.first + index]);
            }
            to[x] = sum;
        }
    }
    InkPlane result(width, height);
    std::vector<float> sums(static_cast<std::size_t>(width));
    for (int y = 0; y < height; ++y) {
        std::fill(sums.begin(), sums.end(), 0.0F);
        const Taps& taps = rows[static_cast<std::size_t>(y)];
        for (std::size_t index = 0; index < taps.weights.size(); ++index) {
            const int sourceY = taps.first + static_cast<int>(index);
            if (sourceY < 0 || sourceY >= source.height()) {
                continue;
            }
            const float* from = narrowed.row(sourceY);
            for (std::size_t x = 0; x < sums.size(); ++x) {
                sums[x] += taps.weights[index] * from[x];
            }
        }
        std::uint8_t* to = result.row(y);
        for (std::size_t x = 0; x < sums.size(); ++x) {
            to[x] = static_cast<std::uint8_t>(std::clamp(sums[x] + 0.5F, 0.0F, 255.0F));
        }
    }
    return result;
}

}  // namespace platform::tesseract
