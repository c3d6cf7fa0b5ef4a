#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QString>
#include <string>
#include <vector>

#include "base/image.h"

namespace tesseract_tests {

inline QImage sheet(int width, int height, const QColor& color = Qt::white) {
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

/// Letters of so many pixels from ascender to descender.
inline QFont letters(int pixels, const char* family = "DejaVu Sans") {
    QFont font(family);
    font.setPixelSize(pixels);
    return font;
}

inline base::Image imageOf(const QImage& drawn) {
    const QImage image = drawn.convertToFormat(QImage::Format_RGB32);
    return base::Image::fromPixels(
        image.width(), image.height(),
        std::vector<std::uint8_t>(image.constBits(), image.constBits() + image.sizeInBytes()),
        base::AlphaChannel::none);
}

}  // namespace tesseract_tests
