#include "platform/tesseract/page_planes.h"

#include "platform/tesseract/thread_pair.h"

namespace platform::tesseract {

ColorPlane colorsOf(const base::Image& image) {
    ColorPlane colors(image.width(), image.height());
    shareBands(image.height(), image.width(), [&](int first, int end) {
        for (int y = first; y < end; ++y) {
            const std::uint8_t* source = image.row(y);
            Color* destination = colors.row(y);
            for (int x = 0; x < image.width(); ++x, source += 4) {
                destination[x] = {source[2], source[1], source[0]};
            }
        }
    });
    return colors;
}

double quantile(std::vector<double> values, double share) {
    if (values.empty()) {
        return 0;
    }
    const auto index = std::min(
        values.size() - 1, static_cast<std::size_t>(static_cast<double>(values.size()) * share));
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(index),
                     values.end());
    return values[index];
}

}  // namespace platform::tesseract
