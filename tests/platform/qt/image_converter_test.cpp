#include "platform/qt/image_converter.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QImage>

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes pngOf(const QImage& image) {
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    image.save(&file, "PNG");
    return {file.data().begin(), file.data().end()};
}

QImage readBack(const Bytes& file, const char* format) {
    return QImage::fromData(file.data(), static_cast<int>(file.size()), format);
}

QImage twoColors() {
    QImage image(20, 10, QImage::Format_RGB32);
    image.fill(QColor(200, 30, 10));
    for (int x = 10; x < 20; ++x) {
        for (int y = 0; y < 10; ++y) {
            image.setPixelColor(x, y, QColor(0, 90, 255));
        }
    }
    image.setDotsPerMeterX(5669);
    image.setDotsPerMeterY(5669);
    return image;
}

TEST(ImageConverter, a_bitmap_holds_the_very_pixels_and_the_resolution) {
    const QImage image = readBack(platform::qt::convertPng(pngOf(twoColors()), "image/bmp"), "BMP");

    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.convertToFormat(QImage::Format_RGB32), twoColors());
    EXPECT_EQ(image.dotsPerMeterX(), 5669);
}

TEST(ImageConverter, a_jpeg_holds_nearly_the_same_pixels) {
    const QImage image =
        readBack(platform::qt::convertPng(pngOf(twoColors()), "image/jpeg"), "JPEG");

    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(image.size(), QSize(20, 10));
    EXPECT_NEAR(image.pixelColor(2, 5).red(), 200, 8);
    EXPECT_NEAR(image.pixelColor(17, 5).blue(), 255, 8);
}

TEST(ImageConverter, what_is_transparent_becomes_white) {
    QImage image(4, 4, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    image.setPixelColor(0, 0, QColor(0, 0, 0, 255));

    for (const char* mimeType : {"image/bmp", "image/jpeg"}) {
        const Bytes file = platform::qt::convertPng(pngOf(image), mimeType);
        const QImage opaque = readBack(file, mimeType + 6);
        ASSERT_FALSE(opaque.isNull()) << mimeType;
        EXPECT_GT(opaque.pixelColor(3, 3).lightness(), 230) << mimeType;
    }
}

TEST(ImageConverter, what_cannot_be_read_or_written_gives_nothing) {
    EXPECT_TRUE(platform::qt::convertPng(Bytes{1, 2, 3}, "image/bmp").empty());
    EXPECT_TRUE(platform::qt::convertPng({}, "image/bmp").empty());
    EXPECT_TRUE(platform::qt::convertPng(pngOf(twoColors()), "text/plain").empty());
    EXPECT_TRUE(platform::qt::convertPng(pngOf(twoColors()), "").empty());
}

}  // namespace
