#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <limits>

#include "platform/png/png_encoder.h"
#include "png_reader.h"
#include "sample_pictures.h"

namespace {

using base::AlphaChannel;
using base::Image;
using platform::png::PngEncoder;

png_reader::DecodedPng written(const Image& image, base::Size pointSize) {
    PngEncoder encoder;
    const auto file = encoder.encodePng(image, pointSize);
    EXPECT_TRUE(file);
    return png_reader::decode(file.value());
}

/// The simplest profile that libpng accepts: a display's, for RGB, with no tags, and some bytes
/// that do not compress, since libpng takes very short data for broken.
std::vector<std::uint8_t> simpleProfile() {
    constexpr std::size_t size = 4000;
    std::vector<std::uint8_t> profile(size);
    auto random = sample_pictures::numbersFrom(1);
    std::generate(profile.begin() + 132, profile.end(),
                  [&random] { return static_cast<std::uint8_t>(random()); });
    const auto put = [&profile](std::size_t at, const std::string& text) {
        std::copy(text.begin(), text.end(), profile.begin() + static_cast<std::ptrdiff_t>(at));
    };
    profile[2] = static_cast<std::uint8_t>(size >> 8);
    profile[3] = static_cast<std::uint8_t>(size);
    profile[8] = 2;
    put(12, "mntrRGB XYZ ");
    put(36, "acsp");
    // The illuminant D50, as every profile must have it.
    const std::array<std::uint8_t, 12> illuminant{0, 0, 0xF6, 0xD6, 0, 1, 0, 0, 0, 0, 0xD3, 0x2D};
    std::copy(illuminant.begin(), illuminant.end(), profile.begin() + 68);
    return profile;
}

Image withProfile(std::string name, std::vector<std::uint8_t> profile) {
    return sample_pictures::noise(12, 8, AlphaChannel::none,
                                  std::make_shared<const base::ColorSpace>(
                                      base::ColorSpace{std::move(name), std::move(profile)}));
}

TEST(PngPhysicalSize, records_the_resolution_for_each_scale) {
    struct Example {
        double points;
        std::uint32_t pixelsPerMetre;
    };
    // 100 pixels at the scales 1, 1.25 and 2: 72, 90 and 144 pixels an inch.
    for (const Example example : {Example{100, 2835}, Example{80, 3543}, Example{50, 5669}}) {
        const auto decoded = written(sample_pictures::noise(100, 100, AlphaChannel::none),
                                     {example.points, example.points});

        EXPECT_EQ(decoded.problem, "");
        ASSERT_TRUE(decoded.hasPhysicalSize);
        EXPECT_EQ(decoded.pixelsPerMetreX, example.pixelsPerMetre);
        EXPECT_EQ(decoded.pixelsPerMetreY, example.pixelsPerMetre);
    }
}

TEST(PngPhysicalSize, each_axis_has_its_own) {
    const auto decoded = written(sample_pictures::noise(100, 60, AlphaChannel::none), {100, 30});

    EXPECT_EQ(decoded.pixelsPerMetreX, 2835U);
    EXPECT_EQ(decoded.pixelsPerMetreY, 5669U);
}

TEST(PngPhysicalSize, a_size_without_a_meaning_is_left_out) {
    const auto image = sample_pictures::noise(100, 60, AlphaChannel::none);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    for (const base::Size size : {base::Size{0, 60}, base::Size{100, -60}, base::Size{nan, 60},
                                  base::Size{infinity, 60}, base::Size{100, 1e-9}}) {
        const auto decoded = written(image, size);

        EXPECT_EQ(decoded.problem, "");
        EXPECT_FALSE(decoded.hasPhysicalSize);
    }
}

TEST(PngColors, a_picture_without_a_profile_is_marked_as_standard_rgb) {
    const auto decoded = written(sample_pictures::noise(12, 8, AlphaChannel::none), {12, 8});

    EXPECT_EQ(decoded.problem, "");
    EXPECT_TRUE(decoded.isStandardRgb);
    EXPECT_EQ(decoded.intent, 0);
    EXPECT_TRUE(decoded.profile.empty());
}

TEST(PngColors, a_named_color_space_without_a_profile_is_marked_as_standard_rgb) {
    const auto decoded = written(withProfile("sRGB", {}), {12, 8});

    EXPECT_EQ(decoded.problem, "");
    EXPECT_TRUE(decoded.isStandardRgb);
}

TEST(PngColors, a_profile_goes_along_byte_for_byte) {
    const auto profile = simpleProfile();

    const auto decoded = written(withProfile("Display P3", profile), {12, 8});

    EXPECT_EQ(decoded.problem, "");
    EXPECT_FALSE(decoded.isStandardRgb);
    EXPECT_EQ(decoded.profileName, "Display P3");
    EXPECT_EQ(decoded.profile, profile);
}

TEST(PngColors, the_name_of_a_profile_is_made_a_valid_keyword) {
    struct Example {
        std::string name;
        std::string keyword;
    };
    for (const Example& example :
         {Example{"", "ICC profile"}, Example{"  Büro   Anzeige \n", "B\xFCro Anzeige"},
          Example{"表示", "??"}, Example{std::string(200, 'x'), std::string(79, 'x')},
          Example{std::string(78, 'x') + " y", std::string(78, 'x')}}) {
        const auto decoded = written(withProfile(example.name, simpleProfile()), {12, 8});

        EXPECT_EQ(decoded.problem, "");
        EXPECT_EQ(decoded.profileName, example.keyword);
    }
}

TEST(PngFile, what_describes_the_pixels_stands_before_them) {
    PngEncoder encoder;
    const auto file = encoder.encodePng(withProfile("P3", simpleProfile()), {12, 8});

    const auto chunks = png_reader::chunksOf(file.value());

    ASSERT_GE(chunks.size(), 5U);
    EXPECT_EQ(chunks[0].first, "IHDR");
    EXPECT_EQ(chunks[1].first, "iCCP");
    EXPECT_EQ(chunks[2].first, "pHYs");
    for (std::size_t index = 3; index + 1 < chunks.size(); ++index) {
        EXPECT_EQ(chunks[index].first, "IDAT");
    }
    EXPECT_EQ(chunks.back().first, "IEND");
}

TEST(PngFile, a_broken_byte_is_seen_by_the_reader_of_these_tests) {
    PngEncoder encoder;
    const auto image = sample_pictures::noise(40, 40, AlphaChannel::none);
    auto file = encoder.encodePng(image, {40, 40}).value();
    file[file.size() / 2] ^= 1;

    EXPECT_NE(png_reader::decode(file).problem, "");
}

}  // namespace
