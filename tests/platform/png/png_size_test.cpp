#include <gtest/gtest.h>

#include <QGuiApplication>
#include <iostream>
#include <memory>
#include <string>
#include <tuple>

#include "micro/libpng_peer.h"
#include "micro/pictures.h"
#include "platform/png/png_encoder.h"
#include "png_reader.h"

namespace {

using bench::PictureKind;

struct Size {
    int width;
    int height;
};

class PngSize : public testing::TestWithParam<std::tuple<PictureKind, Size>> {
  protected:
    static void SetUpTestSuite() {
        // Text is drawn without a desktop.
        qputenv("QT_QPA_PLATFORM", "offscreen");
        static int count = 1;
        static std::string name = "png_size_test";
        static char* words[] = {name.data(), nullptr};
        application_ = std::make_unique<QGuiApplication>(count, words);
    }
    static void TearDownTestSuite() { application_.reset(); }

    static std::vector<std::uint8_t> encoded(const base::Image& image, int threads) {
        platform::png::PngEncoder encoder(threads);
        auto file = encoder.encodePng(
            image, {static_cast<double>(image.width()), static_cast<double>(image.height())});
        EXPECT_TRUE(file);
        return file ? std::move(file.value()) : std::vector<std::uint8_t>{};
    }

  private:
    static inline std::unique_ptr<QGuiApplication> application_;
};

TEST_P(PngSize, of_a_picture_is_within_15_per_cent_of_libpngs) {
    const auto [kind, size] = GetParam();
    const base::Image picture = bench::drawPicture(kind, size.width, size.height);
    const auto theirs = bench::encodeWithLibpng(picture).size();
    // As many bands as on one, two and four processors.
    for (const int threads : {1, 2, 4}) {
        const auto file = encoded(picture, threads);
        std::cout << threads << " threads: " << file.size() << " bytes, libpng " << theirs << "\n";
        EXPECT_LE(file.size() * 100, theirs * 115);
        const auto decoded = png_reader::decode(file);
        EXPECT_EQ(decoded.problem, "");
        EXPECT_TRUE(decoded.pixels == bench::packed(picture));
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, PngSize,
                         testing::Combine(testing::ValuesIn(bench::allPictureKinds),
                                          testing::Values(Size{1280, 800}, Size{1920, 1080},
                                                          Size{3840, 2160})),
                         [](const auto& each) {
                             return std::string(bench::nameOf(std::get<0>(each.param))) + "_" +
                                    std::to_string(std::get<1>(each.param).width) + "_wide";
                         });

}  // namespace
