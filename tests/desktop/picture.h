#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "desktop/x_client.h"

namespace desktop {

/// Pixels as 0xAARRGGBB, rows from the top, no padding. Alpha is not multiplied in.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;

    [[nodiscard]] std::uint32_t at(int x, int y) const {
        return pixels.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                         static_cast<std::size_t>(x));
    }
    [[nodiscard]] Picture cut(int x, int y, int cutWidth, int cutHeight) const;
    friend bool operator==(const Picture&, const Picture&) = default;
};

/// "equal", or what is different and where first: the message of a failed comparison.
std::string difference(const Picture& expected, const Picture& actual);

/// Bits of a pixel of a screen with ten for each colour.
inline constexpr int deepScreen = 30;

/// What the screen shows (root window, children included), opaque; of deeper colours the upper
/// eight bits. The pointer is not in it.
Picture readScreen(const XClient& client, int x, int y, int width, int height);
Picture readScreen(const XClient& client);
/// A part of a window or pixmap, in its own coordinates.
Picture readDrawable(const XClient& client, xcb_drawable_t drawable, int x, int y, int width,
                     int height);

/// A decoded PNG file.
struct Png {
    Picture picture;
    bool hasAlpha = false;
    int bitDepth = 0;
    /// Pixels per metre, when the file says so.
    struct Density {
        std::uint32_t x = 0;
        std::uint32_t y = 0;
        friend bool operator==(const Density&, const Density&) = default;
    };
    std::optional<Density> density;
    /// Its ICC profile and the name that the file gives it, when it has one. A profile that the
    /// reader finds anything wrong with is an exception.
    struct Profile {
        std::string name;
        std::vector<std::uint8_t> bytes;
    };
    std::optional<Profile> profile;
    /// The types of all chunks in their order: "IHDR", "pHYs", ...
    std::vector<std::string> chunks;
};

/// Throws std::runtime_error when the bytes are no complete PNG.
Png decodePng(const std::vector<std::uint8_t>& bytes);
void writePng(const std::filesystem::path& path, const Picture& picture);

/// Throws std::runtime_error when the file cannot be read.
std::vector<std::uint8_t> readFile(const std::filesystem::path& path);

}  // namespace desktop
