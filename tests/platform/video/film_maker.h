#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/image.h"

namespace video_tests {

enum class Sound { none, track };

/// What a film of the tests is like. Each of its pictures shows its number, from 0 on.
struct FilmPlan {
    int pictureCount = 12;
    int width = 128;
    int height = 96;
    /// Pictures a second where `stamps` is empty.
    int rate = 25;
    /// When each picture is due, in units of 1/`timescale` s, the last one being the end of the
    /// film.
    std::vector<std::int64_t> stamps{};
    int timescale = 12800;
    /// A name of an encoder: "mpeg4" or "libx264".
    std::string encoder = "libx264";
    /// How many pictures may be coded from ones that come later; only with libx264.
    int reorderedCount = 2;
    int keyDistance = 250;
    Sound sound = Sound::none;
    /// Options of the container: "movflags" values.
    std::string flags{};
    /// Width by height of a pixel.
    int pixelWidth = 1;
    int pixelHeight = 1;
    /// Paints a picture of the luminances instead of its number.
    std::function<std::uint8_t(int picture, int x, int y)> paint{};
    /// The number of the first picture of a second track of them, behind the other.
    std::optional<int> secondTrack{};
};

/// Encodes the film into `path`; throws std::runtime_error.
void makeFilm(const std::filesystem::path& path, const FilmPlan& plan);
/// A file of the same container with a track of sound alone.
void makeSoundOnly(const std::filesystem::path& path);

/// The number that a picture of any size shows, -1 when it shows none.
int numberIn(const base::Image& image);

}  // namespace video_tests
