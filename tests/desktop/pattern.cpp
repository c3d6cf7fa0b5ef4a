#include "desktop/pattern.h"

#include <algorithm>
#include <cstddef>

#include "desktop/wait.h"

namespace desktop {

Picture pattern(int width, int height, std::uint32_t seed) {
    Picture picture{width, height, {}};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            std::uint32_t mixed = static_cast<std::uint32_t>(x) * 2654435761U +
                                  static_cast<std::uint32_t>(y) * 2246822519U + seed * 3266489917U;
            mixed ^= mixed >> 15U;
            mixed *= 2246822519U;
            picture.pixels.push_back(0xff000000U | (mixed >> 8U));
        }
    }
    return picture;
}

Picture gradient(int width, int height) {
    Picture picture{width, height, {}};
    for (int y = 0; y < height; ++y) {
        const auto step = static_cast<std::uint32_t>(y * 100 / height);
        const std::uint32_t color = 0xff2a4a6bU + (step << 16U) + (step << 8U) + step / 2;
        picture.pixels.insert(picture.pixels.end(), static_cast<std::size_t>(width), color);
    }
    return picture;
}

xcb_pixmap_t upload(const XClient& client, const Picture& picture) {
    if (client.screen().root_depth != deepScreen) {
        return uploadPixels(client, picture);
    }
    Picture raw = picture;
    for (std::uint32_t& pixel : raw.pixels) {
        std::uint32_t deep = 0;
        for (const unsigned shift : {16U, 8U, 0U}) {
            const std::uint32_t color = pixel >> shift & 0xffU;
            deep = deep << 10U | color << 2U | color >> 6U;
        }
        pixel = deep;
    }
    return uploadPixels(client, raw);
}

xcb_pixmap_t uploadPixels(const XClient& client, const Picture& picture) {
    const xcb_pixmap_t pixmap = xcb_generate_id(client.get());
    const xcb_gcontext_t context = xcb_generate_id(client.get());
    const auto width = static_cast<std::uint16_t>(picture.width);
    const std::uint8_t depth = client.screen().root_depth;
    xcb_create_pixmap(client.get(), depth, pixmap, client.root(), width,
                      static_cast<std::uint16_t>(picture.height));
    xcb_create_gc(client.get(), context, pixmap, 0, nullptr);
    // Row bands keep each request under the server's smallest maximum length.
    const int rowsPerBand = std::max(1, 60000 / picture.width);
    for (int row = 0; row < picture.height; row += rowsPerBand) {
        const int rows = std::min(rowsPerBand, picture.height - row);
        const std::uint32_t* data = picture.pixels.data() + std::ptrdiff_t{row} * width;
        xcb_put_image(client.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, context, width,
                      static_cast<std::uint16_t>(rows), 0, static_cast<std::int16_t>(row), 0, depth,
                      static_cast<std::uint32_t>(width * rows * 4),
                      reinterpret_cast<const std::uint8_t*>(data));
    }
    xcb_free_gc(client.get(), context);
    return pixmap;
}

Wallpaper::Wallpaper(const std::string& displayName, Motif motif, Ground ground)
    : client_(displayName) {
    if (motif == Motif::none) {
        return;
    }
    const Picture before = readScreen(client_);
    constexpr std::uint32_t seed = 7;
    picture_ = motif == Motif::pattern ? pattern(before.width, before.height, seed)
                                       : gradient(before.width, before.height);
    const xcb_pixmap_t pixmap = upload(client_, picture_);
    switch (ground) {
        case Ground::root:
            showOnRoot(pixmap);
            break;
        case Ground::desktopWindow:
            showInWindow(pixmap);
            break;
    }
    require("The painting of the wallpaper", [this] {
        const int right = picture_.width - 1;
        const int bottom = picture_.height - 1;
        return readScreen(client_, 0, 0, 1, 1).pixels[0] == picture_.at(0, 0) &&
               readScreen(client_, right, bottom, 1, 1).pixels[0] == picture_.at(right, bottom);
    });
}

void Wallpaper::showOnRoot(xcb_pixmap_t pixmap) {
    // Under these names compositors look for the picture that they paint behind the windows.
    for (const char* name : {"_XROOTPMAP_ID", "ESETROOT_PMAP_ID"}) {
        xcb_change_property(client_.get(), XCB_PROP_MODE_REPLACE, client_.root(),
                            client_.atom(name), XCB_ATOM_PIXMAP, 32, 1, &pixmap);
    }
    xcb_change_window_attributes(client_.get(), client_.root(), XCB_CW_BACK_PIXMAP, &pixmap);
    xcb_clear_area(client_.get(), 0, client_.root(), 0, 0, 0, 0);
}

void Wallpaper::showInWindow(xcb_pixmap_t pixmap) {
    const xcb_window_t window = xcb_generate_id(client_.get());
    xcb_create_window(client_.get(), XCB_COPY_FROM_PARENT, window, client_.root(), 0, 0,
                      static_cast<std::uint16_t>(picture_.width),
                      static_cast<std::uint16_t>(picture_.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXMAP, &pixmap);
    const xcb_atom_t type = client_.atom("_NET_WM_WINDOW_TYPE_DESKTOP");
    xcb_change_property(client_.get(), XCB_PROP_MODE_REPLACE, window,
                        client_.atom("_NET_WM_WINDOW_TYPE"), XCB_ATOM_ATOM, 32, 1, &type);
    xcb_map_window(client_.get(), window);
    xcb_flush(client_.get());
}

}  // namespace desktop
