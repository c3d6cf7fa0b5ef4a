#include "desktop/picture.h"

#include <cstdio>
#include <cstring>
#include <fstream>
#include <stdexcept>

namespace desktop {

Picture Picture::cut(int x, int y, int cutWidth, int cutHeight) const {
    Picture part{cutWidth, cutHeight, {}};
    for (int row = 0; row < cutHeight; ++row) {
        for (int column = 0; column < cutWidth; ++column) {
            part.pixels.push_back(at(x + column, y + row));
        }
    }
    return part;
}

std::string difference(const Picture& expected, const Picture& actual) {
    if (expected.width != actual.width || expected.height != actual.height) {
        return "expected " + std::to_string(expected.width) + "x" +
               std::to_string(expected.height) + ", got " + std::to_string(actual.width) + "x" +
               std::to_string(actual.height);
    }
    std::size_t count = 0;
    std::size_t first = 0;
    for (std::size_t index = expected.pixels.size(); index-- > 0;) {
        if (expected.pixels[index] != actual.pixels[index]) {
            ++count;
            first = index;
        }
    }
    if (count == 0) {
        return "equal";
    }
    char text[160];
    const auto width = static_cast<std::size_t>(expected.width);
    std::snprintf(text, sizeof text, "%zu of %zu pixels differ, first at (%zu, %zu): %08x not %08x",
                  count, expected.pixels.size(), first % width, first / width, actual.pixels[first],
                  expected.pixels[first]);
    return text;
}

Picture readScreen(const XClient& client, int x, int y, int width, int height) {
    return readDrawable(client, client.root(), x, y, width, height);
}

Picture readDrawable(const XClient& client, xcb_drawable_t drawable, int x, int y, int width,
                     int height) {
    const auto cookie =
        xcb_get_image(client.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, drawable,
                      static_cast<std::int16_t>(x), static_cast<std::int16_t>(y),
                      static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height), ~0U);
    xcb_generic_error_t* refused = nullptr;
    const Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(client.get(), cookie, &refused));
    const Reply<xcb_generic_error_t> error(refused);
    if (!reply) {
        char text[120];
        std::snprintf(text, sizeof text,
                      "%d x %d pixels at (%d, %d) of %x could not be read: %s %d.", width, height,
                      x, y, drawable, error ? "error" : "connection lost,",
                      error ? error->error_code : xcb_connection_has_error(client.get()));
        throw std::runtime_error(text);
    }
    Picture picture{width, height, {}};
    picture.pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    std::memcpy(picture.pixels.data(), xcb_get_image_data(reply.get()),
                picture.pixels.size() * sizeof(std::uint32_t));
    const bool isDeep = client.screen().root_depth == deepScreen;
    for (std::uint32_t& pixel : picture.pixels) {
        if (isDeep) {
            pixel = (pixel >> 22U & 0xffU) << 16U | (pixel >> 12U & 0xffU) << 8U |
                    (pixel >> 2U & 0xffU);
        }
        pixel |= 0xff000000U;
    }
    return picture;
}

Picture readScreen(const XClient& client) {
    const Reply<xcb_get_geometry_reply_t> root(xcb_get_geometry_reply(
        client.get(), xcb_get_geometry(client.get(), client.root()), nullptr));
    if (!root) {
        throw std::runtime_error("The screen could not be read.");
    }
    return readScreen(client, 0, 0, root->width, root->height);
}

std::vector<std::uint8_t> readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("The file " + path.string() + " could not be read.");
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace desktop
