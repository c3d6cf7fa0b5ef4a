#include "base/image.h"

namespace base {

Image Image::fromPixels(int width, int height, std::vector<std::uint8_t> pixels,
                        AlphaChannel alphaChannel, std::shared_ptr<const ColorSpace> colorSpace) {
    auto storage = std::make_shared<const std::vector<std::uint8_t>>(std::move(pixels));
    const std::uint8_t* first = storage->data();
    return {width,
            height,
            static_cast<std::size_t>(width) * 4,
            first,
            alphaChannel,
            storage,
            std::move(colorSpace)};
}

}  // namespace base
