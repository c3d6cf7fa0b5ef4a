#include "platform/qt/image_converter.h"

#include <QBuffer>
#include <QByteArray>
#include <QColorSpace>
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <new>

namespace platform::qt {

namespace {

/// Close to what the eye can tell from the original, since the picture is often edited further.
constexpr int jpegQuality = 92;

QImage readPng(std::span<const std::uint8_t> png) {
    return QImage::fromData(png.data(), static_cast<int>(png.size()), "PNG");
}

/// Neither kind of file that is written here carries alpha to every reader. Null without memory.
QImage onWhite(const QImage& image) {
    if (!image.hasAlphaChannel()) {
        return image;
    }
    QImage opaque(image.size(), QImage::Format_RGB32);
    if (opaque.isNull()) {
        return opaque;
    }
    opaque.setDotsPerMeterX(image.dotsPerMeterX());
    opaque.setDotsPerMeterY(image.dotsPerMeterY());
    opaque.setColorSpace(image.colorSpace());
    opaque.fill(Qt::white);
    QPainter painter(&opaque);
    painter.drawImage(QRect(QPoint(0, 0), image.size()), image);
    return opaque;
}

std::vector<std::uint8_t> converted(std::span<const std::uint8_t> png, std::string_view mimeType) {
    const auto formats = QImageWriter::imageFormatsForMimeType(
        QByteArray(mimeType.data(), static_cast<qsizetype>(mimeType.size())));
    const QImage image = formats.isEmpty() ? QImage() : readPng(png);
    if (image.isNull()) {
        return {};
    }
    QBuffer file;
    file.open(QIODevice::WriteOnly);
    QImageWriter writer(&file, formats.first());
    writer.setQuality(jpegQuality);
    if (!writer.write(onWhite(image))) {
        return {};
    }
    return {file.data().begin(), file.data().end()};
}

}  // namespace

std::vector<std::uint8_t> convertPng(std::span<const std::uint8_t> png, std::string_view mimeType) {
    try {
        return converted(png, mimeType);
    } catch (const std::bad_alloc&) {
        // The toolkit's pictures are null without memory, but its files throw.
        return {};
    }
}

}  // namespace platform::qt
